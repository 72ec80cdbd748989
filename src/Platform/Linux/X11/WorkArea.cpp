#include "Platform/Linux/X11/WorkArea.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <xcb/xcb.h>

namespace morvane {

namespace {

constexpr std::uint32_t strutWords = 12;

/// The children of all these windows. Sends all requests before it reads the first reply: one round
/// trip however many there are.
QList<std::uint32_t> childrenOf(xcb_connection_t *connection, const QList<std::uint32_t> &parents) {
    QList<xcb_query_tree_cookie_t> cookies;
    for (const std::uint32_t parent : parents) {
        cookies.append(xcb_query_tree(connection, parent));
    }
    QList<std::uint32_t> result;
    for (const auto cookie : cookies) {
        const XcbReply<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(connection, cookie, nullptr));
        if (reply) {
            const auto *children = xcb_query_tree_children(reply.get());
            result.append(QList<std::uint32_t>(
                children, children + xcb_query_tree_children_length(reply.get())));
        }
    }
    return result;
}

/// The windows of these that can be seen.
QList<std::uint32_t> viewable(xcb_connection_t *connection, const QList<std::uint32_t> &windows) {
    QList<xcb_get_window_attributes_cookie_t> cookies;
    for (const std::uint32_t window : windows) {
        cookies.append(xcb_get_window_attributes(connection, window));
    }
    QList<std::uint32_t> result;
    for (qsizetype index = 0; index < windows.size(); ++index) {
        const XcbReply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(connection, cookies[index], nullptr));
        if (reply && reply->map_state == XCB_MAP_STATE_VIEWABLE) {
            result.append(windows[index]);
        }
    }
    return result;
}

} // namespace

WorkArea::WorkArea(X11Connection &x11) : m_x11(x11) {
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        if (atom == m_x11.atom("_NET_CLIENT_LIST") || atom == m_x11.atom("_NET_WORKAREA") ||
            atom == m_x11.atom("_NET_CURRENT_DESKTOP")) {
            read();
        }
    });
    connect(&m_x11, &X11Connection::topLevelsChanged, this, &WorkArea::read);
    read();
}

QRect WorkArea::of(const QRect &screen, bool isAlone) const {
    QRect area = screen;
    // Struts are counted from the edges of the whole desktop, not from those of a screen.
    const QSize desktop = m_x11.rootSize();
    for (const Strut &strut : m_struts) {
        area = strut.shrink(area, screen, desktop);
    }
    const QRect told = area & m_told;
    return isAlone && !told.isEmpty() ? told : area;
}

void WorkArea::read() {
    auto windows = m_x11.property(m_x11.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW);
    const QList<Strut> struts = strutsOf(windows + windowsInView());
    const QRect told = toldArea();
    if (struts != m_struts || told != m_told) {
        m_struts = struts;
        m_told = told;
        emit changed();
    }
}

/// The visible top-level windows and their visible children: some window managers put frames around
/// windows that they don't list.
QList<std::uint32_t> WorkArea::windowsInView() const {
    auto *connection = m_x11.connection();
    const auto outer = viewable(connection, childrenOf(connection, {m_x11.root()}));
    return outer + viewable(connection, childrenOf(connection, outer));
}

QList<Strut> WorkArea::strutsOf(const QList<std::uint32_t> &windows) const {
    auto *connection = m_x11.connection();
    const std::uint32_t name = m_x11.atom("_NET_WM_STRUT_PARTIAL");
    QList<xcb_get_property_cookie_t> cookies;
    for (const std::uint32_t window : windows) {
        cookies.append(
            xcb_get_property(connection, 0, window, name, XCB_ATOM_CARDINAL, 0, strutWords));
    }
    QList<Strut> result;
    for (const auto cookie : cookies) {
        const XcbReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 32) {
            continue;
        }
        const auto *items = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
        const Strut strut = Strut::of(QList<std::uint32_t>(items, items + reply->value_len));
        if (!strut.isEmpty() && !result.contains(strut)) {
            result.append(strut);
        }
    }
    return result;
}

/// The property has four items for each desktop.
QRect WorkArea::toldArea() const {
    const auto areas = m_x11.property(m_x11.root(), "_NET_WORKAREA", XCB_ATOM_CARDINAL);
    const auto desktop = m_x11.property(m_x11.root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
    const qsizetype first = 4 * static_cast<qsizetype>(desktop.value(0));
    if (first + 4 > areas.size()) {
        return {};
    }
    const auto item = [&](qsizetype index) { return static_cast<int>(areas[first + index]); };
    return {item(0), item(1), item(2), item(3)};
}

} // namespace morvane

#include "moc_WorkArea.cpp"
