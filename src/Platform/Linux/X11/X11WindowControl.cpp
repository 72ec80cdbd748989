#include "Platform/Linux/X11/X11WindowControl.h"

#include "Platform/Linux/X11/X11Connection.h"

#include <xcb/xcb.h>

namespace morvane {

/// A window manager that was killed leaves its list behind, but not the window by which it tells
/// that it is there.
bool X11WindowControl::canFocusWindows() const {
    const QByteArray check("_NET_SUPPORTING_WM_CHECK");
    const auto manager = m_x11.property(m_x11.root(), check, XCB_ATOM_WINDOW);
    return !manager.isEmpty() &&
           m_x11.property(manager.first(), check, XCB_ATOM_WINDOW) == manager &&
           m_x11.property(m_x11.root(), "_NET_SUPPORTED", XCB_ATOM_ATOM)
               .contains(m_x11.atom("_NET_ACTIVE_WINDOW"));
}

} // namespace morvane
