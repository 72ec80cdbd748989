#pragma once

#include "Presentation/Style/Animation.h"

#include <QWidget>

namespace morvane {

/// A widget that comes and goes by fading. Its owner draws it as faint as it is at the moment; it
/// is hidden while nothing is to be seen of it.
class FadingContent {
public:
    struct Timing {
        Seconds delay;   ///< before it begins to come
        Seconds coming;  ///< quick at first
        Seconds leaving; ///< slow at first
    };

    /// `changed` is called whenever the opacity has changed. The widget starts out hidden.
    FadingContent(QWidget &widget, const Timing &timing, Scheduler &scheduler,
                  std::function<void()> changed);

    /// A change that is under way turns round from where it is.
    void setShown(bool shown, Motion motion);

    QWidget &widget() const { return m_widget; }

    /// From 0 to 1.
    double opacity() const { return m_opacity; }

private:
    void setOpacity(double opacity);

    QWidget &m_widget;
    const Timing m_timing;
    std::function<void()> m_changed;
    Animation m_animation;
    bool m_isShown = false;
    double m_opacity = 0;
};

} // namespace morvane
