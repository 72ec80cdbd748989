#pragma once

#include "Platform/Linux/X11/FullscreenWindows.h"
#include "Platform/OverlayWindows.h"

namespace morvane {

class X11Connection;

/// Makes the overlays of an X server. Owned by the application, outlives the overlays; the
/// connection must outlive it.
class X11OverlayWindows : public OverlayWindows {
public:
    explicit X11OverlayWindows(X11Connection &x11) : m_x11(x11), m_fullscreen(x11) {}

    std::unique_ptr<OverlayWindow> adopt(QWidget &widget) override;

private:
    X11Connection &m_x11;
    FullscreenWindows m_fullscreen;
};

} // namespace morvane
