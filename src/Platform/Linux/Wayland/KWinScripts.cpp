#include "Platform/Linux/Wayland/KWinScripts.h"

#include "Platform/Linux/Desktop/BusQuestion.h"

#include <QDBusMessage>
#include <QTemporaryFile>
#include <QTimer>
#include <QUuid>

#include <chrono>

namespace morvane {

namespace {

constexpr std::chrono::seconds scriptLimit(2);

/// What lies before every script.
const QString beginning = QStringLiteral(R"(
function windows() {
    return workspace.stackingOrder ? Array.prototype.slice.call(workspace.stackingOrder)
         : workspace.windowList ? workspace.windowList() : workspace.clientList();
}
function tell(text) {
    callDBus("%1", "%2", "io.morvane.Windows", "told", "%3", text);
}
)");

} // namespace

KWinScripts::KWinScripts(const QDBusConnection &bus, const QString &path)
    : m_bus(bus), m_path(path) {
    m_bus.registerObject(m_path, this, QDBusConnection::ExportAllSlots);
}

KWinScripts::~KWinScripts() {
    for (auto script = m_scripts.keyBegin(); script != m_scripts.keyEnd(); ++script) {
        unload(*script);
    }
}

void KWinScripts::ask(const QString &body, const Heard &heard) {
    const QString script = run(body, heard, true);
    QTimer::singleShot(scriptLimit, this, [this, script] { told(script, {}); });
}

void KWinScripts::follow(const QString &body, const Heard &heard) {
    run(body, heard, false);
}

/// The name is one that nobody can guess, since anybody on the bus may answer.
QString KWinScripts::run(const QString &body, const Heard &heard, bool tellsOnce) {
    const QString name =
        QStringLiteral("morvane-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto file = std::make_shared<QTemporaryFile>();
    if (file->open()) {
        file->write((beginning.arg(m_bus.baseService(), m_path, name) + body).toUtf8());
        file->close();
    }
    m_scripts.insert(name, {file, heard, tellsOnce});
    const auto load = call(QStringLiteral("loadScript"), {file->fileName(), name});
    BusQuestion::ask(m_bus, load, this, [this, name](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            told(name, {});
        } else {
            m_bus.send(call(QStringLiteral("start"), {}));
        }
    });
    return name;
}

void KWinScripts::told(const QString &script, const QString &text) {
    const auto known = m_scripts.constFind(script);
    if (known == m_scripts.cend()) {
        return;
    }
    const Heard heard = known->heard;
    if (known->tellsOnce) {
        m_scripts.erase(known);
        unload(script);
    }
    heard(text);
}

void KWinScripts::unload(const QString &script) {
    m_bus.send(call(QStringLiteral("unloadScript"), {script}));
}

QDBusMessage KWinScripts::call(const QString &method, const QVariantList &arguments) const {
    QDBusMessage result =
        QDBusMessage::createMethodCall(QStringLiteral("org.kde.KWin"), QStringLiteral("/Scripting"),
                                       QStringLiteral("org.kde.kwin.Scripting"), method);
    result.setArguments(arguments);
    result.setAutoStartService(false);
    return result;
}

} // namespace morvane

#include "moc_KWinScripts.cpp"
