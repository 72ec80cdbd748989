#include "Platform/Linux/X11/ActiveWindow.h"

#include "Platform/Linux/Desktop/KnownApplications.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <QWidget>
#include <xcb/xcb.h>

namespace morvane {

namespace {

const QByteArray activeWindowName("_NET_ACTIVE_WINDOW");
const QByteArray desktopName("_NET_CURRENT_DESKTOP");
constexpr std::uint32_t maxClassWords = 64;

} // namespace

ActiveWindow::ActiveWindow(X11Connection &x11)
    : m_x11(x11), m_last(activeWindow()), m_desktop(desktop()) {
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        // Which of the two changes first is up to the window manager.
        if (atom == m_x11.atom(activeWindowName) || atom == m_x11.atom(desktopName)) {
            read();
        }
    });
}

/// While an overlay of ours has the keyboard, some window managers report no active window and some
/// report the overlay; neither that nor the return is an activation. Leaving for an empty desktop
/// looks the same, but the return from there is one.
void ActiveWindow::read() {
    const std::uint32_t window = activeWindow();
    if (window == XCB_WINDOW_NONE && hasLeft()) {
        m_last = XCB_WINDOW_NONE;
    }
    if (window == XCB_WINDOW_NONE || window == m_last || isOverlay(window)) {
        return;
    }
    m_last = window;
    m_desktop = desktop();
    emit activated(KnownApplications::bundleID(windowClass(window)));
}

std::uint32_t ActiveWindow::activeWindow() const {
    return m_x11.property(m_x11.root(), activeWindowName, XCB_ATOM_WINDOW).value(0);
}

std::uint32_t ActiveWindow::desktop() const {
    return m_x11.property(m_x11.root(), desktopName, XCB_ATOM_CARDINAL).value(0);
}

/// False when the keyboard has only been lent to an overlay of ours, or is back already. While the
/// desktop changes, the window may still have it.
bool ActiveWindow::hasLeft() const {
    if (desktop() != m_desktop) {
        return true;
    }
    const auto cookie = xcb_get_input_focus(m_x11.connection());
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_x11.connection(), cookie, nullptr));
    return reply && reply->focus != m_last && QWidget::find(reply->focus) == nullptr;
}

/// True for any window that the window manager doesn't manage, ours or another program's.
bool ActiveWindow::isOverlay(std::uint32_t window) const {
    const auto cookie = xcb_get_window_attributes(m_x11.connection(), window);
    const XcbReply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_x11.connection(), cookie, nullptr));
    return reply && reply->override_redirect != 0;
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

#include "moc_ActiveWindow.cpp"
