#include "Platform/Linux/X11/X11OverlayWindows.h"

namespace morvane {

std::unique_ptr<OverlayWindow> X11OverlayWindows::adopt(QWidget &widget) {
    return std::make_unique<X11OverlayWindow>(widget, m_x11, *m_fullscreen, m_owners);
}

} // namespace morvane
