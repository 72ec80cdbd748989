#include "Platform/Linux/X11OverlayWindow.h"

#include "Platform/Linux/X11Connection.h"

#include <QApplication>
#include <QWidget>
#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cmath>
#include <vector>

namespace morvane {

namespace {

xcb_connection_t *qtConnection() {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

/// The region in device pixels, grown to whole ones.
std::vector<xcb_rectangle_t> deviceRectangles(const QRegion &region, double scale) {
    std::vector<xcb_rectangle_t> result;
    for (const QRect &rect : region) {
        const double left = std::floor(rect.x() * scale);
        const double top = std::floor(rect.y() * scale);
        const double right = std::ceil((rect.x() + rect.width()) * scale);
        const double bottom = std::ceil((rect.y() + rect.height()) * scale);
        result.push_back({static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
                          static_cast<std::uint16_t>(right - left),
                          static_cast<std::uint16_t>(bottom - top)});
    }
    return result;
}

} // namespace

X11OverlayWindow::X11OverlayWindow(QWidget &widget, X11Connection &x11)
    : m_widget(widget), m_x11(x11) {
    m_widget.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint |
                            Qt::NoDropShadowWindowHint);
    m_widget.setAttribute(Qt::WA_ShowWithoutActivating);
    m_widget.setAttribute(Qt::WA_TranslucentBackground);
    m_window = static_cast<std::uint32_t>(m_widget.winId());
    connect(&m_x11, &X11Connection::compositedChanged, this, &X11OverlayWindow::applyShape);
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        if (atom == m_x11.atom("_NET_CLIENT_LIST_STACKING") && isVisible()) {
            raise();
        }
    });
}

X11OverlayWindow::~X11OverlayWindow() = default;

void X11OverlayWindow::setGeometry(const QRect &frame, Anchor anchor) {
    if (frame.size() != m_widget.size()) {
        applyAnchor(anchor);
    }
    m_widget.setGeometry(frame);
}

void X11OverlayWindow::setShape(const QRegion &shape) {
    if (shape != m_shape) {
        m_shape = shape;
        applyShape();
    }
}

void X11OverlayWindow::show() {
    m_widget.show();
    raise();
}

void X11OverlayWindow::hide() {
    m_widget.hide();
}

bool X11OverlayWindow::isVisible() const {
    return m_widget.isVisible();
}

void X11OverlayWindow::setOpacity(double opacity) {
    m_opacity = opacity;
    m_widget.setWindowOpacity(opacity);
}

void X11OverlayWindow::setHidesOverFullscreen(bool) {}

bool X11OverlayWindow::takeKeyboard() {
    return false;
}

void X11OverlayWindow::releaseKeyboard() {}

bool X11OverlayWindow::isTranslucent() const {
    return m_x11.isComposited();
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
    const auto rectangles = deviceRectangles(m_shape, m_widget.devicePixelRatioF());
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

/// Not while a menu of ours is open, which it would cover.
void X11OverlayWindow::raise() {
    auto *connection = qtConnection();
    if (connection != nullptr && QApplication::activePopupWidget() == nullptr) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        xcb_flush(connection);
    }
}

} // namespace morvane
