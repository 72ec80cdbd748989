#include "EndToEnd/VirtualDisplay.h"

#include "Support/WaitUntil.h"

#include <QFile>
#include <QStandardPaths>

#include <utility>

namespace morvane {

namespace {

/// Without decorations a window fills the screen to its edges.
constexpr const char *windowManagerSettings =
    R"(<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application class="*"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>)";

QStringList coordinates(const QPoint &position) {
    return {QString::number(position.x()), QString::number(position.y())};
}

} // namespace

VirtualDisplay::VirtualDisplay(QProcessEnvironment environment)
    : m_environment(std::move(environment)) {
    // Without -noreset it would start over, under the feet of who is just coming, whenever its last
    // client leaves.
    m_server = start("Xvfb -displayfd 1 -screen 0 1280x800x24 -noreset -nolisten tcp");
    m_bus = start("dbus-daemon --session --nofork --print-address=1");
    const auto number = m_server->readLine();
    const auto address = m_bus->readLine();
    if (!number || !address) {
        return;
    }
    m_environment.insert("DISPLAY", QLatin1Char(':') + QString::fromLatin1(*number));
    m_environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromLatin1(*address));

    QFile settings(m_folder.filePath("rc.xml"));
    settings.open(QIODevice::WriteOnly);
    settings.write(windowManagerSettings);
    settings.close();
    m_windowManager = start("openbox --sm-disable --config-file " + settings.fileName().toUtf8());
    // It tells of desktops once it manages windows: one that came earlier would stay without focus.
    m_isUp = waitUntil([this] { return control({"get_num_desktops"}).has_value(); });
}

QStringList VirtualDisplay::missingPrograms() {
    QStringList result;
    for (const char *name : {"Xvfb", "openbox", "xdotool", "xterm", "dbus-daemon"}) {
        if (QStandardPaths::findExecutable(QLatin1String(name)).isEmpty()) {
            result.append(QLatin1String(name));
        }
    }
    return result;
}

void VirtualDisplay::movePointer(const QPoint &position) const {
    control(QStringList{"mousemove"} + coordinates(position));
}

void VirtualDisplay::click(const QPoint &position, int button) const {
    control(QStringList{"mousemove"} + coordinates(position) +
            QStringList{"click", QString::number(button)});
}

void VirtualDisplay::press(const QString &key) const {
    control({"key", key});
}

std::unique_ptr<ChildProcess> VirtualDisplay::type(const QString &text) const {
    return std::make_unique<ChildProcess>(QStringList{"xdotool", "type", text}, m_environment);
}

QByteArray VirtualDisplay::focusedTitle() const {
    return control({"getwindowfocus", "getwindowname"}).value_or(QByteArray());
}

std::unique_ptr<ChildProcess> VirtualDisplay::start(const QByteArray &command) const {
    return std::make_unique<ChildProcess>(QString::fromUtf8(command).split(QLatin1Char(' ')),
                                          m_environment);
}

std::optional<QByteArray> VirtualDisplay::control(const QStringList &arguments) const {
    ChildProcess xdotool(QStringList{"xdotool"} + arguments, m_environment);
    return xdotool.wait() == 0 ? std::optional(xdotool.output().trimmed()) : std::nullopt;
}

} // namespace morvane
