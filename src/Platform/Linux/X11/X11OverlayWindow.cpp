#include "Platform/Linux/X11/X11OverlayWindow.h"

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/X11/CoveredPixels.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>
#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace morvane {

namespace {

xcb_connection_t *qtConnection() {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

constexpr std::uint32_t lastClickButton = 3; // what follows is the wheel

std::vector<xcb_rectangle_t> toXcb(const QList<QRect> &rects) {
    std::vector<xcb_rectangle_t> result;
    for (const QRect &rect : rects) {
        result.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                          static_cast<std::uint16_t>(rect.width()),
                          static_cast<std::uint16_t>(rect.height())});
    }
    return result;
}

std::uint32_t inputFocus(xcb_connection_t *connection) {
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply ? reply->focus : std::uint32_t(XCB_INPUT_FOCUS_POINTER_ROOT);
}

/// The child of the root that contains the window; none if there is no such window.
std::uint32_t topLevel(const X11Connection &x11, std::uint32_t window) {
    std::uint32_t result = XCB_WINDOW_NONE;
    while (window > XCB_INPUT_FOCUS_POINTER_ROOT && window != x11.root()) {
        const auto cookie = xcb_query_tree(x11.connection(), window);
        const XcbReply<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(x11.connection(), cookie, nullptr));
        if (!reply) {
            return XCB_WINDOW_NONE;
        }
        result = std::exchange(window, reply->parent);
    }
    return result;
}

/// False when the window is gone or can't be seen.
bool setInputFocus(xcb_connection_t *connection, std::uint32_t window) {
    const auto cookie =
        xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    return !error;
}

} // namespace

X11OverlayWindow::X11OverlayWindow(QWidget &widget, X11Connection &x11,
                                   FullscreenWindows &fullscreen, KeyboardOwners &owners)
    : m_widget(widget), m_x11(x11), m_fullscreen(fullscreen), m_owners(owners) {
    m_widget.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint |
                            Qt::NoDropShadowWindowHint);
    m_widget.setAttribute(Qt::WA_ShowWithoutActivating);
    m_widget.setAttribute(Qt::WA_TranslucentBackground);
    m_window = static_cast<std::uint32_t>(m_widget.winId());
    connect(&m_x11, &X11Connection::compositedChanged, this, &X11OverlayWindow::applyShape);
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        if (atom == m_x11.atom("_NET_CLIENT_LIST_STACKING")) {
            raise();
        }
    });
    // Some window managers assume that the window that was active before still has the keyboard, so
    // a click on that window would leave the keyboard here. Other windows don't count: they may be
    // the field's own menu, or an input method's.
    connect(&m_x11, &X11Connection::pressed, this, [this](std::uint32_t button) {
        if (m_owners.contains(m_window) && button <= lastClickButton && isOwnerUnderPointer()) {
            releaseKeyboard();
        }
    });
    connect(&m_fullscreen, &FullscreenWindows::changed, this, &X11OverlayWindow::applyVisibility);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11OverlayWindow::~X11OverlayWindow() {
    releaseKeyboard();
}

void X11OverlayWindow::setGeometry(const QRect &frame, Anchor anchor) {
    if (frame.size() != m_widget.size()) {
        applyAnchor(anchor);
    }
    m_widget.setGeometry(frame);
    if (!m_widget.isVisible()) {
        // Qt defers the move until it shows the widget, but whether it is shown may depend on the
        // new place.
        m_widget.windowHandle()->setGeometry(frame);
    }
    applyVisibility();
}

void X11OverlayWindow::setShape(const QPainterPath &shape) {
    if (shape != m_shape || m_widget.devicePixelRatioF() != m_shapeRatio) {
        m_shape = shape;
        applyShape();
    }
}

void X11OverlayWindow::show() {
    m_isShown = true;
    applyVisibility();
    raise();
}

void X11OverlayWindow::hide() {
    m_isShown = false;
    applyVisibility();
}

void X11OverlayWindow::setOpacity(double opacity) {
    m_opacity = opacity;
    m_widget.setWindowOpacity(opacity);
}

void X11OverlayWindow::setHidesOverFullscreen(bool hides) {
    m_hidesOverFullscreen = hides;
    if (hides) {
        m_fullscreen.follow();
    }
    applyVisibility();
}

bool X11OverlayWindow::takeKeyboard() {
    auto *connection = qtConnection();
    if (connection == nullptr || m_x11.isXwayland() || !m_widget.isVisible()) {
        return false;
    }
    const std::uint32_t owner = inputFocus(connection);
    if (owner == m_window) {
        return true;
    }
    if (!setInputFocus(connection, m_window)) {
        return false;
    }
    // If another overlay has the keyboard, that one's owner counts: overlays only borrow it.
    m_owners.insert(m_window, m_owners.value(owner, owner));
    m_x11.watchPresses(true);
    return true;
}

/// Asks the server, since Qt waits a moment before it reports a loss.
bool X11OverlayWindow::holdsKeyboard() const {
    auto *connection = qtConnection();
    return connection != nullptr && m_owners.contains(m_window) &&
           inputFocus(connection) == m_window;
}

void X11OverlayWindow::releaseKeyboard() {
    if (m_owners.contains(m_window)) {
        const std::uint32_t owner = m_owners.take(m_window);
        m_x11.watchPresses(!m_owners.isEmpty());
        giveUpKeyboardTo(owner);
        raise();
    }
}

/// Grabs the server so that the focus can't change between the check and the change: the window
/// manager may be about to give the keyboard to the window that was clicked.
void X11OverlayWindow::giveUpKeyboardTo(std::uint32_t owner) {
    auto *connection = qtConnection();
    if (connection == nullptr) {
        return;
    }
    xcb_grab_server(connection);
    if (inputFocus(connection) == m_window && !setInputFocus(connection, owner)) {
        // Its owner has gone; the window manager knows who is next.
        setInputFocus(connection, XCB_INPUT_FOCUS_POINTER_ROOT);
    }
    xcb_ungrab_server(connection);
    xcb_flush(connection);
}

/// XWayland is told of no click on a native window, whatever is grabbed.
bool X11OverlayWindow::hearsOtherClicks() const {
    return !m_x11.isXwayland();
}

bool X11OverlayWindow::isTranslucent() const {
    return m_x11.isComposited();
}

/// While a key is held that another program has grabbed, such as the one for the next keyboard
/// layout, the keyboard goes there and comes back. That is kept from Qt, which would take it for a
/// loss; a real loss comes as an event of its own, even then. The window that gets the keyboard may
/// have come up above this one.
bool X11OverlayWindow::nativeEventFilter(const QByteArray &kind, void *message, qintptr *) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto &loss = *static_cast<const xcb_focus_out_event_t *>(message);
    if ((loss.response_type & 0x7f) != XCB_FOCUS_OUT || loss.event != m_window) {
        return false;
    }
    if (loss.mode == XCB_NOTIFY_MODE_GRAB) {
        return true;
    }
    raise();
    return false;
}

void X11OverlayWindow::applyAnchor(Anchor anchor) {
    const std::uint32_t gravity =
        anchor == Anchor::topRight ? XCB_GRAVITY_NORTH_EAST : XCB_GRAVITY_NORTH;
    if (auto *connection = qtConnection()) {
        xcb_change_window_attributes(connection, m_window, XCB_CW_BIT_GRAVITY, &gravity);
    }
}

void X11OverlayWindow::applyShape() {
    auto *connection = qtConnection();
    if (connection == nullptr) {
        return;
    }
    m_shapeRatio = m_widget.devicePixelRatioF();
    const auto rectangles = toXcb(coveredPixels(m_shape, m_shapeRatio));
    const auto count = static_cast<std::uint32_t>(rectangles.size());
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, m_window, 0, 0, count, rectangles.data());
    if (isTranslucent()) {
        xcb_shape_mask(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, m_window, 0, 0,
                       XCB_PIXMAP_NONE);
    } else {
        // Without a compositor what is unpainted would be black.
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, m_window, 0, 0, count, rectangles.data());
    }
    xcb_flush(connection);
}

void X11OverlayWindow::applyVisibility() {
    const bool wasCovered = std::exchange(m_isCovered, findCovered());
    const bool isVisible = m_isShown && !m_isCovered;
    if (isVisible != m_widget.isVisible()) {
        if (!isVisible) {
            // Hiding a window that has the keyboard would leave it to nobody.
            releaseKeyboard();
        }
        m_widget.setVisible(isVisible);
        raise();
    }
    if (m_isCovered != wasCovered && onCoveredChanged) {
        onCoveredChanged();
    }
}

/// Also true over the owner's frame, and over the bare desktop.
bool X11OverlayWindow::isOwnerUnderPointer() const {
    const std::uint32_t window = m_x11.windowUnderPointer();
    return window == XCB_WINDOW_NONE || window == topLevel(m_x11, m_owners.value(m_window));
}

/// Asks the server for the place, since only there it is in the same pixels as the areas.
bool X11OverlayWindow::findCovered() const {
    auto *connection = qtConnection();
    const QList<QRect> areas = m_hidesOverFullscreen ? m_fullscreen.areas() : QList<QRect>();
    if (areas.isEmpty() || connection == nullptr) {
        return false;
    }
    const XcbReply<xcb_get_geometry_reply_t> place(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, m_window), nullptr));
    return place && std::ranges::any_of(areas, [&place](const QRect &area) {
               return area.intersects({place->x, place->y, place->width, place->height});
           });
}

/// Checks the keyboard too, since Qt keeps the focus in a text field for a moment after the
/// keyboard is gone.
bool X11OverlayWindow::isTypedIn() const {
    const QWidget *focus = QApplication::focusWidget();
    return m_widget.isAncestorOf(focus) && focus->testAttribute(Qt::WA_InputMethodEnabled) &&
           holdsKeyboard();
}

/// Does nothing while a menu of ours is open or somebody types: the window would cover the menu, or
/// what an input method offers.
void X11OverlayWindow::raise() {
    auto *connection = qtConnection();
    const bool isBelowMenu = QApplication::activePopupWidget() != nullptr;
    if (connection != nullptr && m_widget.isVisible() && !isBelowMenu && !isTypedIn()) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(connection);
    }
}

} // namespace morvane

#include "moc_X11OverlayWindow.cpp"
