#include "Platform/Linux/X11/ScreenDisplays.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace morvane {

namespace {

/// FNV-1a: the same for an output's name on every start.
std::uint32_t displayID(const QString &name) {
    std::uint32_t hash = 2166136261U;
    for (const char byte : name.toUtf8()) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * 16777619U;
    }
    return hash;
}

bool isBuiltin(const QString &name) {
    constexpr std::array connectors{"eDP", "LVDS", "DSI"};
    return std::ranges::any_of(connectors, [&](const char *connector) {
        return name.startsWith(QLatin1String(connector));
    });
}

/// With no output left Qt makes up a screen and names it after the X screen, ":0.0".
bool isInvented(const QScreen &screen) {
    return screen.name().startsWith(u':');
}

/// A screen's own rectangle in device pixels: Qt scales its size, but not its place.
QRect deviceRect(const QScreen &screen) {
    const QRect points = screen.geometry();
    return {points.topLeft(), (QSizeF(points.size()) * screen.devicePixelRatio()).toSize()};
}

} // namespace

ScreenDisplays::ScreenDisplays(X11Connection &x11) : m_x11(x11) {
    for (QScreen *screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        watch(screen);
        emit changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &Displays::changed);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &Displays::changed);
    connect(&m_x11, &X11Connection::rootPropertyChanged, this, [this](std::uint32_t atom) {
        if (atom == m_x11.atom("_NET_CLIENT_LIST") || atom == m_x11.atom("_NET_WORKAREA")) {
            readStruts();
        }
    });
    readStruts();
}

QList<Display> ScreenDisplays::displays() const {
    QList<Display> result;
    for (const QScreen *screen : QGuiApplication::screens()) {
        // Mirrored outputs are one display to a person, and one place to be at.
        const bool isMirror = std::ranges::any_of(result, [screen](const Display &display) {
            return display.frame == screen->geometry();
        });
        if (!isInvented(*screen) && !isMirror) {
            result.append(display(*screen));
        }
    }
    return result;
}

Display ScreenDisplays::display(const QScreen &screen) const {
    Display result{.id = displayID(screen.name()),
                   .frame = screen.geometry(),
                   .visibleFrame = workArea(screen),
                   .isBuiltin = isBuiltin(screen.name())};
    if (result.isBuiltin) {
        addNotch(result, screen);
    }
    return result;
}

void ScreenDisplays::addNotch(Display &display, const QScreen &screen) const {
    const auto notch = m_notches.notch(deviceRect(screen).size());
    if (!notch) {
        return;
    }
    const QSizeF points = QSizeF(*notch) / screen.devicePixelRatio();
    display.topSafeAreaInset = static_cast<int>(std::ceil(points.height()));
    const int side = static_cast<int>((display.frame.width() - points.width()) / 2);
    display.auxiliaryTopLeftArea = QSize(side, display.topSafeAreaInset);
    display.auxiliaryTopRightArea = display.auxiliaryTopLeftArea;
}

QPoint ScreenDisplays::pointerPosition() const {
    return QCursor::pos();
}

void ScreenDisplays::watch(QScreen *screen) {
    connect(screen, &QScreen::geometryChanged, this, &Displays::changed);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &Displays::changed);
}

void ScreenDisplays::readStruts() {
    const auto windows = m_x11.property(m_x11.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW);
    // All questions go out before the first answer is read: one round trip for all windows.
    QList<xcb_get_property_cookie_t> cookies;
    for (const std::uint32_t window : windows) {
        cookies.append(xcb_get_property(m_x11.connection(), 0, window,
                                        m_x11.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 0,
                                        12));
    }
    QList<Strut> struts;
    for (const auto cookie : cookies) {
        const XcbReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_x11.connection(), cookie, nullptr));
        if (reply && reply->format == 32) {
            const auto *items =
                static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
            struts.append(Strut::of(QList<std::uint32_t>(items, items + reply->value_len)));
        }
    }
    struts.removeIf([](const Strut &strut) { return strut.isEmpty(); });
    if (struts != m_struts) {
        m_struts = struts;
        emit changed();
    }
}

QRect ScreenDisplays::workArea(const QScreen &screen) const {
    const QRect device = deviceRect(screen);
    QRect area = device;
    // Struts are counted from the edges of the whole desktop, not from those of a screen.
    const QSize desktop = m_x11.rootSize();
    for (const Strut &strut : m_struts) {
        area = strut.shrink(area, device, desktop);
    }
    // A point that is only in part below a bar counts as free: what hangs there leaves no gap.
    const double scale = screen.devicePixelRatio();
    const auto points = [&](int pixels) { return static_cast<int>(std::floor(pixels / scale)); };
    const QPoint offset(points(area.left() - device.left()), points(area.top() - device.top()));
    return {screen.geometry().topLeft() + offset, (QSizeF(area.size()) / scale).toSize()};
}

} // namespace morvane
