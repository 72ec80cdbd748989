#include "Platform/Linux/X11/ScreenDisplays.h"

#include "Platform/Linux/X11/X11Connection.h"

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

ScreenDisplays::ScreenDisplays(X11Connection &x11) : m_x11(x11), m_workArea(x11) {
    for (QScreen *screen : QGuiApplication::screens()) {
        watch(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        watch(screen);
        emit changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &Displays::changed);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &Displays::changed);
    connect(&m_workArea, &WorkArea::changed, this, &Displays::changed);
}

QList<Display> ScreenDisplays::displays() const {
    QList<const QScreen *> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        // Mirrored outputs are one display to a person, and one place to be at.
        const bool isMirror = std::ranges::any_of(screens, [screen](const QScreen *other) {
            return other->geometry() == screen->geometry();
        });
        if (!isInvented(*screen) && !isMirror) {
            screens.append(screen);
        }
    }
    QList<Display> result;
    for (const QScreen *screen : screens) {
        result.append(display(*screen, screens.size() == 1));
    }
    return result;
}

Display ScreenDisplays::display(const QScreen &screen, bool isAlone) const {
    Display result{.id = displayID(screen.name()),
                   .frame = screen.geometry(),
                   .visibleFrame = workArea(screen, isAlone),
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

/// While the pointer is over a native window, XWayland sees it over none of its own, and standing
/// still.
bool ScreenDisplays::isPointerKnown() const {
    return !m_x11.isXwayland() || m_x11.windowUnderPointer() != XCB_WINDOW_NONE;
}

void ScreenDisplays::watch(QScreen *screen) {
    connect(screen, &QScreen::geometryChanged, this, &Displays::changed);
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, &Displays::changed);
}

QRect ScreenDisplays::workArea(const QScreen &screen, bool isAlone) const {
    const QRect device = deviceRect(screen);
    const QRect area = m_workArea.of(device, isAlone);
    // A point that a bar covers only in part counts as free, so that what hangs below the bar
    // leaves no gap.
    const double scale = screen.devicePixelRatio();
    const auto points = [&](int pixels) { return static_cast<int>(std::floor(pixels / scale)); };
    const QPoint offset(points(area.left() - device.left()), points(area.top() - device.top()));
    return {screen.geometry().topLeft() + offset, (QSizeF(area.size()) / scale).toSize()};
}

} // namespace morvane

#include "moc_ScreenDisplays.cpp"
