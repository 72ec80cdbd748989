#include "Presentation/Notch/FadingContent.h"

#include <algorithm>

namespace morvane {

FadingContent::FadingContent(QWidget &widget, const Timing &timing, Scheduler &scheduler,
                             std::function<void()> changed)
    : m_widget(widget), m_timing(timing), m_changed(std::move(changed)), m_animation(scheduler) {
    m_widget.hide();
}

void FadingContent::setShown(bool shown, Motion motion) {
    if (shown == m_isShown) {
        return;
    }
    m_isShown = shown;
    if (motion == Motion::atOnce) {
        m_animation.stop();
        setOpacity(shown ? 1 : 0);
        return;
    }
    const Seconds delay = shown ? m_timing.delay : Seconds(0);
    const Seconds length = shown ? m_timing.coming : m_timing.leaving;
    m_animation.start(delay + length, [this, shown, delay, length, from = m_opacity](double share) {
        const double passed = std::max(0.0, (share * (delay + length) - delay) / length);
        setOpacity(shown ? from + (1 - from) * Animation::easeOut(passed)
                         : from * (1 - Animation::easeIn(passed)));
    });
}

void FadingContent::setOpacity(double opacity) {
    m_opacity = opacity;
    m_widget.setVisible(m_isShown || opacity > 0);
    m_changed();
}

} // namespace morvane
