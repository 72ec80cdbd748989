#include "Presentation/Panel/LimitsPage.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QVBoxLayout>

#include <algorithm>

namespace morvane {

namespace {

constexpr int barSpacing = 9;

} // namespace

LimitsPage::LimitsPage(bool showsAlertMarkers, QWidget &note, QWidget *parent)
    : QWidget(parent), m_showsAlertMarkers(showsAlertMarkers), m_note(note),
      m_barColumn(new QVBoxLayout),
      m_unavailable(new TextLabel(Typography::text(Typography::secondarySize),
                                  Colors::secondaryText, 1, this)) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(barSpacing);
    m_barColumn->setSpacing(barSpacing);
    column->addLayout(m_barColumn);
    column->addWidget(m_unavailable);
    column->addWidget(&m_note);
}

void LimitsPage::setLimits(const QList<UsageLimit> &limits, Date now) {
    while (m_bars.size() < limits.size()) {
        m_bars.append(new UsageBar(m_showsAlertMarkers, this));
        m_barColumn->addWidget(m_bars.last());
    }
    for (qsizetype place = 0; place < m_bars.size(); ++place) {
        m_bars[place]->setVisible(place < limits.size());
        if (place < limits.size()) {
            m_bars[place]->setLimit(limits[place], now);
        }
    }
    m_unavailable->hide();
    m_note.show();
}

void LimitsPage::setUnavailable(const std::optional<QString> &reason) {
    for (UsageBar *bar : std::as_const(m_bars)) {
        bar->hide();
    }
    m_unavailable->setText(reason ? tr("usage n/a — %1").arg(*reason) : tr("usage n/a"));
    m_unavailable->show();
    m_note.hide();
}

std::optional<Seconds> LimitsPage::untilTextsChange(Date now) const {
    std::optional<Seconds> next;
    for (const UsageBar *bar : m_bars) {
        if (!bar->isHidden()) {
            const Seconds change = bar->untilTextChanges(now);
            next = std::min(next.value_or(change), change);
        }
    }
    return next;
}

} // namespace morvane

#include "moc_LimitsPage.cpp"
