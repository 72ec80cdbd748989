#include "Platform/Linux/ActiveWindow.h"

#include "Platform/Linux/KnownApplications.h"
#include "Platform/Linux/X11Connection.h"
#include "Platform/Linux/XcbReply.h"

#include <xcb/xcb.h>

namespace morvane {

namespace {

const QByteArray activeWindowName("_NET_ACTIVE_WINDOW");
constexpr std::uint32_t maxClassWords = 64;

} // namespace

ActiveWindow::ActiveWindow(X11Connection &x11) : m_x11(x11) {
    const std::uint32_t activeWindow = m_x11.atom(activeWindowName);
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this, activeWindow](auto atom) {
        if (atom == activeWindow) {
            read();
        }
    });
}

/// Some window managers go through no window at all on the way from one to the next, and back to
/// the same one when a window of ours gives the keyboard back; neither is an activation.
void ActiveWindow::read() {
    const auto windows = m_x11.property(m_x11.root(), activeWindowName, XCB_ATOM_WINDOW);
    const std::uint32_t window = windows.value(0);
    if (window == XCB_WINDOW_NONE || window == m_last) {
        return;
    }
    m_last = window;
    emit activated(KnownApplications::bundleID(windowClass(window)));
}

QString ActiveWindow::windowClass(std::uint32_t window) const {
    const auto cookie = xcb_get_property(m_x11.connection(), 0, window, XCB_ATOM_WM_CLASS,
                                         XCB_ATOM_STRING, 0, maxClassWords);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_x11.connection(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    // Two names, each with a zero byte at its end: the instance's and the class's.
    const QByteArray names(static_cast<const char *>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()));
    return QString::fromUtf8(names.split('\0').value(1));
}

} // namespace morvane
