#include "Presentation/Panel/CompactInfoView.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Mascot/PixelAnimator.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/UsageMilestoneBadge.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr double minute = 60;

} // namespace

CompactInfoView::CompactInfoView(const PanelContext &context, const PixelAnimator &mascot,
                                 QWidget *parent)
    : QWidget(parent), m_store(context.store), m_usage(context.usage),
      m_scheduler(context.scheduler), m_mascot(mascot),
      m_time(new TextLabel(Typography::text(Typography::bodySize, QFont::Medium),
                           Colors::primaryText, 1, this)),
      m_count(new TextLabel(Typography::text(Typography::bodySize, QFont::Medium),
                            Colors::secondaryText, 1, this)),
      m_milestone(new UsageMilestoneBadge(UsageMilestoneBadge::Size::compact, this)) {
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(6);
    connect(&m_mascot, &PixelAnimator::stepped, this, &CompactInfoView::showTime);
    line->addStretch();
    line->addWidget(m_time);
    line->addWidget(m_count);
    line->addWidget(m_milestone);
    line->addStretch();
}

void CompactInfoView::refresh() {
    const auto reportable = m_store.reportableSessions();
    m_since =
        reportable.isEmpty() ? std::nullopt : std::optional(reportable.first().stateChangedAt);
    const auto count = reportable.size();
    m_count->setText(QStringLiteral("×%1").arg(count));
    m_count->setAccessibleName(count == 1 ? tr("1 session") : tr("%1 sessions").arg(count));
    m_milestone->setMilestone(m_store.hasWorkingUsageMilestoneSession() ? m_usage.activeMilestone()
                                                                        : std::nullopt);
    m_time->setVisible(m_milestone->isHidden());
    m_count->setVisible(m_milestone->isHidden() && count > 1);
    // Not measured before there is a time: the first font metrics load all fonts, which costs more
    // than a window.
    setMinimumWidth(m_since ? steadyWidth() : 0);
    setVisible(m_since.has_value());
    showTime();
    scheduleMinute();
}

/// A minimum width for the centred content, so that the capsule keeps its width while the seconds
/// run.
int CompactInfoView::steadyWidth() const {
    if (m_time->isHidden()) {
        return 0;
    }
    const int time = m_time->fontMetrics().horizontalAdvance(tr("<1m")) + 2;
    return m_count->isHidden() ? time : time + layout()->spacing() + m_count->sizeHint().width();
}

QString CompactInfoView::count() const {
    return m_since ? m_count->accessibleName() : QString();
}

QString CompactInfoView::time() const {
    return m_since ? timeInMinutes() : QString();
}

QString CompactInfoView::milestone() const {
    return m_milestone->isHidden() ? QString() : m_milestone->accessibleName();
}

/// A text that stays true until the next full minute.
QString CompactInfoView::timeInMinutes() const {
    const Date now = m_scheduler.now();
    return Seconds(now - *m_since).count() < minute ? tr("<1m")
                                                    : TimeFormat::elapsed(*m_since, now);
}

void CompactInfoView::showTime() {
    if (m_since) {
        m_time->setText(m_mascot.isMoving() ? TimeFormat::elapsed(*m_since, m_scheduler.now())
                                            : timeInMinutes());
    }
}

void CompactInfoView::scheduleMinute() {
    if (!m_since || !isVisible()) {
        m_minute.cancel();
        return;
    }
    const double elapsed = std::max(0.0, Seconds(m_scheduler.now() - *m_since).count());
    m_minute = m_scheduler.after(Seconds(minute - std::fmod(elapsed, minute)), [this] {
        showTime();
        scheduleMinute();
        emit timeChanged();
    });
}

void CompactInfoView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    showTime();
    scheduleMinute();
}

void CompactInfoView::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    m_minute.cancel();
}

} // namespace morvane

#include "moc_CompactInfoView.cpp"
