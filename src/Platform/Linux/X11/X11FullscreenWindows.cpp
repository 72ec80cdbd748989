#include "Platform/Linux/X11/X11FullscreenWindows.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <xcb/xcb.h>

#include <utility>

namespace morvane {

namespace {

constexpr std::uint32_t onAllDesktops = 0xFFFFFFFF;

} // namespace

void X11FullscreenWindows::follow() {
    if (m_isFollowing) {
        return;
    }
    m_isFollowing = true;
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        if (atom == m_x11.atom("_NET_ACTIVE_WINDOW") ||
            atom == m_x11.atom("_NET_CURRENT_DESKTOP")) {
            refresh();
        }
    });
    connect(&m_x11, &X11Connection::windowPropertyChanged, this,
            [this](std::uint32_t window, std::uint32_t atom) {
                if (m_watched.contains(window) && atom == m_x11.atom("_NET_WM_STATE")) {
                    refresh();
                }
            });
    connect(&m_x11, &X11Connection::windowStructureChanged, this, [this](std::uint32_t window) {
        if (m_watched.contains(window)) {
            refresh();
        }
    });
    refresh();
}

/// A window that becomes active on one display leaves those on the others as they are: a film goes
/// on there. While the focus moves from one window to the next, no window is active for a moment.
void X11FullscreenWindows::refresh() {
    const auto windows = m_x11.property(m_x11.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
    const std::uint32_t active = windows.value(0);
    QMap<std::uint32_t, QRect> covering;
    for (auto known = m_covering.cbegin(); known != m_covering.cend(); ++known) {
        const auto window = read(known.key());
        if (window && window->isFullscreen && window->isInView &&
            (active != XCB_WINDOW_NONE || !isOnOtherDesktop(known.key()))) {
            covering.insert(known.key(), window->frame);
        }
    }
    const auto window = active != XCB_WINDOW_NONE ? read(active) : std::nullopt;
    if (window) {
        covering.removeIf([&](const std::pair<const std::uint32_t &, QRect &> &entry) {
            return entry.second.intersects(window->frame);
        });
        if (window->isFullscreen && window->isInView) {
            covering.insert(active, window->frame);
        }
    }
    watch(covering.keys(), active);
    m_covering = covering;
    setAreas(covering.values());
}

/// None when the window is gone.
std::optional<X11FullscreenWindows::Window> X11FullscreenWindows::read(std::uint32_t window) const {
    auto *connection = m_x11.connection();
    const auto attributesCookie = xcb_get_window_attributes(connection, window);
    const auto sizeCookie = xcb_get_geometry(connection, window);
    // The window's own geometry is relative to the window manager's frame around it.
    const auto placeCookie = xcb_translate_coordinates(connection, window, m_x11.root(), 0, 0);
    const XcbReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, sizeCookie, nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection, placeCookie, nullptr));
    if (!attributes || !size || !place) {
        return std::nullopt;
    }
    const auto states = m_x11.property(window, "_NET_WM_STATE", XCB_ATOM_ATOM);
    return Window{{place->dst_x, place->dst_y, size->width, size->height},
                  states.contains(m_x11.atom("_NET_WM_STATE_FULLSCREEN")),
                  attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
                      !states.contains(m_x11.atom("_NET_WM_STATE_HIDDEN"))};
}

/// Some compositors keep windows of other desktops viewable.
bool X11FullscreenWindows::isOnOtherDesktop(std::uint32_t window) const {
    const auto own = m_x11.property(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL);
    const auto current = m_x11.property(m_x11.root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
    return !own.isEmpty() && !current.isEmpty() && own.first() != onAllDesktops && own != current;
}

void X11FullscreenWindows::watch(const QList<std::uint32_t> &covering, std::uint32_t active) {
    QList<std::uint32_t> wanted = covering;
    if (active != XCB_WINDOW_NONE && !wanted.contains(active)) {
        wanted.append(active);
    }
    for (const std::uint32_t window : std::as_const(m_watched)) {
        if (!wanted.contains(window)) {
            m_x11.stopWatching(window);
        }
    }
    for (const std::uint32_t window : std::as_const(wanted)) {
        if (!m_watched.contains(window)) {
            m_x11.watchWindow(window);
        }
    }
    m_watched = wanted;
}

} // namespace morvane

#include "moc_X11FullscreenWindows.cpp"
