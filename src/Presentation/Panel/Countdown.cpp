#include "Presentation/Panel/Countdown.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr int urgentSeconds = 10;
constexpr QColor calmColor = Colors::tertiaryText;
constexpr Seconds tick(1);

} // namespace

Countdown::Countdown(Scheduler &scheduler, QWidget *parent)
    : TextLabel(Typography::text(Typography::secondarySize), calmColor, 1, parent),
      m_scheduler(scheduler) {}

void Countdown::setExpiresAt(Date expiresAt) {
    m_expiresAt = expiresAt;
    refresh();
}

void Countdown::showEvent(QShowEvent *event) {
    TextLabel::showEvent(event);
    refresh();
}

void Countdown::hideEvent(QHideEvent *event) {
    TextLabel::hideEvent(event);
    m_tick.cancel();
}

void Countdown::refresh() {
    const Seconds left = std::max(Seconds(0), Seconds(m_expiresAt - m_scheduler.now()));
    const int whole = static_cast<int>(std::floor(left.count()));
    setText(tr("%1s").arg(whole));
    setAccessibleName(tr("%1 seconds left").arg(whole));
    setColor(whole > urgentSeconds ? calmColor : Colors::denyAccent);
    if (isVisible() && whole > 0) {
        // Aimed just past the turn of the second, so that no number is shown twice or left out.
        const Seconds untilTurn = left - Seconds(whole);
        const Seconds margin(0.002);
        m_tick = m_scheduler.after(untilTurn > margin ? untilTurn + margin : tick,
                                   [this] { refresh(); });
    } else {
        m_tick.cancel();
    }
}

} // namespace morvane

#include "moc_Countdown.cpp"
