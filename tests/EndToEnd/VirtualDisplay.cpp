#include "EndToEnd/VirtualDisplay.h"

#include "Support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace morvane {

VirtualDisplay::VirtualDisplay(QProcessEnvironment environment, const WindowManager &manager)
    : m_environment(std::move(environment)), m_manager(manager) {
    // Without -noreset the server would reset whenever its last client leaves, and cut off a client
    // that is just connecting.
    m_server = start("Xvfb -displayfd 1 -screen 0 1280x800x24 -noreset -nolisten tcp");
    m_bus = start("dbus-daemon --session --nofork --print-address=1");
    const auto number = m_server->readLine();
    const auto address = m_bus->readLine();
    if (!number || !address) {
        return;
    }
    m_environment.insert("DISPLAY", QLatin1Char(':') + QString::fromLatin1(*number));
    m_environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromLatin1(*address));

    // Otherwise some window managers would start services for their settings and for screen
    // readers.
    m_environment.insert("GSETTINGS_BACKEND", "memory");
    m_environment.insert("NO_AT_BRIDGE", "1");

    const QDir home(m_environment.value("HOME"));
    for (const auto &[path, content] : m_manager.files) {
        if (path == nullptr) {
            continue;
        }
        home.mkpath(QFileInfo(QLatin1String(path)).path());
        QFile file(home.filePath(QLatin1String(path)));
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }
    m_windowManager = start(m_manager.command);
    // The window manager announces its desktops once it manages windows. A window that came earlier
    // would never get the focus.
    m_isUp = waitUntil([this] { return control({"get_num_desktops"}).has_value(); });
}

QStringList VirtualDisplay::missingPrograms(const WindowManager &manager) {
    QStringList result;
    for (const char *name : {"Xvfb", manager.name, "xdotool", "xrandr", "xterm", "dbus-daemon"}) {
        if (QStandardPaths::findExecutable(QLatin1String(name)).isEmpty()) {
            result.append(QLatin1String(name));
        }
    }
    return result;
}

void VirtualDisplay::movePointer(const QPoint &position) const {
    control({"mousemove", QString::number(position.x()), QString::number(position.y())});
}

void VirtualDisplay::click(const QPoint &position, int button) const {
    control({"mousemove", QString::number(position.x()), QString::number(position.y()), "click",
             QString::number(button)});
}

void VirtualDisplay::press(const QString &key) const {
    control({"key", key});
}

std::unique_ptr<ChildProcess> VirtualDisplay::type(const QString &text) const {
    return std::make_unique<ChildProcess>(QStringList{"xdotool", "type", text}, m_environment);
}

void VirtualDisplay::goToDesktop(int index) const {
    if (QLatin1String(m_manager.name) == QLatin1String("i3")) {
        // i3 creates a desktop when it is switched to, which only its own tool can do.
        run({"i3-msg", "--quiet", "workspace", "number", QString::number(index + 1)});
    } else {
        control({"set_desktop", QString::number(index)});
    }
}

void VirtualDisplay::setMonitor(const QString &name, const QRect &place) const {
    const QString geometry = QString::asprintf("%d/300x%d/200+%d+%d", place.width(), place.height(),
                                               place.x(), place.y());
    // Only one monitor can have the only output.
    const bool isFirst = place.topLeft().isNull();
    run({"xrandr", "--setmonitor", name, geometry, isFirst ? "screen" : "none"});
}

bool VirtualDisplay::run(const QStringList &command) const {
    return ChildProcess(command, m_environment).wait() == 0;
}

bool VirtualDisplay::bringToFront(const QString &title) const {
    return waitUntil([&] {
        if (focusedTitle() == title.toUtf8()) {
            return true;
        }
        // This waits for the activation. A second request during the first would count as newer
        // than whatever the test does next.
        tryWithWindow(title, {"windowactivate", "--sync"});
        return false;
    });
}

bool VirtualDisplay::withWindow(const QString &title, const QStringList &action) const {
    return waitUntil([&] { return tryWithWindow(title, action); });
}

QByteArray VirtualDisplay::focusedTitle() const {
    return control({"getwindowfocus", "getwindowname"}).value_or(QByteArray()).trimmed();
}

std::unique_ptr<ChildProcess> VirtualDisplay::start(const QByteArray &command) const {
    return std::make_unique<ChildProcess>(QString::fromUtf8(command).split(QLatin1Char(' ')),
                                          m_environment);
}

bool VirtualDisplay::tryWithWindow(const QString &title, const QStringList &action) const {
    return control(QStringList{"search", "--onlyvisible", "--name", "^" + title + "$"} + action)
        .has_value();
}

std::optional<QByteArray> VirtualDisplay::control(const QStringList &arguments) const {
    return ChildProcess(QStringList{"xdotool"} + arguments, m_environment).outputAtEnd();
}

} // namespace morvane
