#include "Presentation/Panel/UsageBar.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Panel/UsageMilestoneStyle.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/ReadAsText.h"
#include "Presentation/Style/Typography.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr int rowGap = 4;
constexpr int textGap = 6;
constexpr int percentWidth = 42;
constexpr int scopeSize = 8;
constexpr int timesSize = 10;

constexpr double trackHeight = 8;
constexpr QColor trackColor = Colors::white(0.1);
constexpr double shortestBar = 5;
constexpr double overOpacity = 0.35;

constexpr double markerWidth = 1.5;
constexpr QColor markerColor = Colors::sRgb(0, 0, 0, 0.7);
constexpr double nominalUntil = 0.84;
/// How near the pointer has to come to a marker, in points.
constexpr double markerReach = 4;

QFont labelFont() {
    return Typography::text(Typography::bodySize, QFont::Medium);
}

QPainterPath capsule(const QRectF &rect) {
    const double radius = std::min(rect.width(), rect.height()) / 2;
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

/// Spans the whole track, so that the colour at the end of a fill shows its level.
QLinearGradient levels(const QRectF &track, bool showsAlertMarkers) {
    QLinearGradient gradient(track.topLeft(), track.topRight());
    gradient.setColorAt(0, UsageMilestoneStyle::cool);
    gradient.setColorAt(showsAlertMarkers ? nominalUntil : 1, UsageMilestoneStyle::nominal);
    if (showsAlertMarkers) {
        for (std::size_t place = 0; place < UsageMilestone::thresholds.size(); ++place) {
            gradient.setColorAt(UsageMilestone::thresholds[place],
                                UsageMilestoneStyle::milestoneColors[place]);
        }
    }
    return gradient;
}

} // namespace

UsageBar::UsageBar(bool showsAlertMarkers, QWidget *parent)
    : QWidget(parent), m_showsAlertMarkers(showsAlertMarkers) {
    readAsText(*this);
    setFont(labelFont());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void UsageBar::setLimit(const UsageLimit &limit, Date now) {
    m_limit = limit;
    m_isOver = limit.window.isOver(now);
    m_times = times(now);
    QString name = tr("%1, %2 window, %3 percent used")
                       .arg(limit.label, limit.scope, QString::number(percent()));
    setAccessibleName(name);
    setAccessibleDescription(m_times);
    update();
}

QString UsageBar::times(Date now) const {
    QStringList result;
    if (const auto reset = m_limit.window.upcomingReset(now)) {
        result << tr("resets in %1").arg(TimeFormat::remaining(*reset, now));
    } else if (m_isOver) {
        result << tr("has reset since");
    }
    if (UsagePoller::areOld(m_limit.readAt, now)) {
        result << tr("updated %1").arg(TimeFormat::ago(m_limit.readAt, now));
    }
    return result.join(QStringLiteral(" · "));
}

Seconds UsageBar::untilTextChanges(Date now) const {
    Seconds next = TimeFormat::untilAgoChanges(m_limit.readAt, now);
    if (const auto reset = m_limit.window.upcomingReset(now)) {
        next = std::min(next, TimeFormat::untilRemainingChanges(*reset, now));
    }
    return next;
}

int UsageBar::percent() const {
    return static_cast<int>(std::lround(m_limit.window.utilization * 100));
}

QRectF UsageBar::track() const {
    return {0, height() - trackHeight, static_cast<double>(width()), trackHeight};
}

QSize UsageBar::sizeHint() const {
    return {percentWidth, fontMetrics().height() + rowGap + static_cast<int>(trackHeight)};
}

/// The markers are painted, and each has a help text of its own.
bool UsageBar::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip || !m_showsAlertMarkers) {
        return QWidget::event(event);
    }
    const auto *help = static_cast<QHelpEvent *>(event);
    const auto isNear = [&](double threshold) {
        return help->pos().y() >= track().top() - markerReach &&
               std::abs(help->pos().x() - threshold * width()) <= markerReach;
    };
    const auto mark = std::ranges::find_if(UsageMilestone::thresholds, isNear);
    if (mark == UsageMilestone::thresholds.end()) {
        QToolTip::hideText();
        event->ignore();
        return true;
    }
    const QString text = tr("Alert at %1% while Claude is working")
                             .arg(UsageMilestone{.threshold = *mark}.percent());
    QToolTip::showText(help->globalPos(), helpMarkup(text), this);
    return true;
}

void UsageBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintTexts(painter);
    paintTrack(painter);
}

void UsageBar::paintTexts(QPainter &painter) const {
    const int baseline = fontMetrics().ascent();
    int left = 0;
    const auto draw = [&](const QString &text, const QFont &font, const QColor &color) {
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(left, baseline, text);
        left += QFontMetrics(font).horizontalAdvance(text) + textGap;
    };
    draw(m_limit.label, labelFont(), Colors::primaryText);
    draw(m_limit.scope, Typography::text(scopeSize, QFont::Bold), Colors::faintText);

    const QFont timesFont = Typography::text(timesSize);
    left = width() - percentWidth - QFontMetrics(timesFont).horizontalAdvance(m_times);
    draw(m_times, timesFont, Colors::tertiaryText);

    const QString percentText = tr("%1%").arg(percent());
    const QFont percentFont = Typography::text(Typography::bodySize, QFont::Bold);
    left = width() - QFontMetrics(percentFont).horizontalAdvance(percentText);
    const QColor color = UsageMilestoneStyle::color(m_limit.window.utilization);
    draw(percentText, percentFont, m_isOver ? Colors::faded(color, overOpacity) : color);
}

void UsageBar::paintTrack(QPainter &painter) const {
    const QRectF whole = track();
    painter.fillPath(capsule(whole), trackColor);
    QRectF fill = whole;
    fill.setWidth(std::max(shortestBar, whole.width() * m_limit.window.utilization));
    painter.setOpacity(m_isOver ? overOpacity : 1);
    painter.fillPath(capsule(fill), levels(whole, m_showsAlertMarkers));
    painter.setOpacity(1);
    if (!m_showsAlertMarkers) {
        return;
    }
    for (const double threshold : UsageMilestone::thresholds) {
        const double left = whole.width() * threshold - markerWidth / 2;
        painter.fillRect(QRectF(left, whole.top(), markerWidth, trackHeight), markerColor);
    }
}

} // namespace morvane

#include "moc_UsageBar.cpp"
