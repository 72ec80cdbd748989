#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/X11/X11OverlayWindow.h"
#include "Platform/OverlayWindows.h"

#include <memory>
#include <utility>

namespace morvane {

class X11Connection;

/// Makes the overlays of an X server. Owned by the application; must outlive the overlays, and the
/// connection must outlive it.
class X11OverlayWindows : public OverlayWindows {
public:
    X11OverlayWindows(X11Connection &x11, std::unique_ptr<FullscreenWindows> fullscreen)
        : m_x11(x11), m_fullscreen(std::move(fullscreen)) {}

    std::unique_ptr<OverlayWindow> adopt(QWidget &widget) override {
        return std::make_unique<X11OverlayWindow>(widget, m_x11, *m_fullscreen, m_owners);
    }

private:
    X11Connection &m_x11;
    const std::unique_ptr<FullscreenWindows> m_fullscreen;
    X11OverlayWindow::KeyboardOwners m_owners;
};

} // namespace morvane
