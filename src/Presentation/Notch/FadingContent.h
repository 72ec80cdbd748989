#pragma once

#include "Presentation/Style/Animation.h"

#include <QWidget>

namespace morvane {

/// A widget that fades in and out. Its owner draws it at the current opacity; it is hidden once it
/// has faded out.
class FadingContent {
public:
    struct Timing {
        Seconds delay;   ///< before the fade-in
        Seconds coming;  ///< fade-in, fast at first
        Seconds leaving; ///< fade-out, slow at first
    };

    /// `changed` is called whenever the opacity has changed. The widget starts out hidden.
    FadingContent(QWidget &widget, const Timing &timing, Scheduler &scheduler,
                  std::function<void()> changed);

    /// A fade that is under way turns round at its current opacity.
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
