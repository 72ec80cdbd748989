#include "Platform/Linux/Wayland/KWinScripts.h"

#include "Platform/Linux/Desktop/BusQuestion.h"
#include "Platform/Scheduler.h"

#include <QDBusMessage>
#include <QTemporaryFile>
#include <QUuid>

namespace morvane {

namespace {

constexpr Seconds scriptLimit(2);

/// Put before the body of every script.
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

KWinScripts::KWinScripts(const QDBusConnection &bus, const QString &path, Scheduler &scheduler)
    : m_bus(bus), m_path(path), m_scheduler(scheduler) {
    m_bus.registerObject(m_path, this, QDBusConnection::ExportAllSlots);
}

KWinScripts::~KWinScripts() {
    for (const auto &[name, script] : m_scripts) {
        unload(name);
    }
}

void KWinScripts::ask(const QString &body, const Heard &heard) {
    const QString script = run(body, heard, Tells::once);
    m_scripts[script].limit = m_scheduler.after(scriptLimit, [this, script] { told(script, {}); });
}

void KWinScripts::follow(const QString &body, const Heard &heard) {
    run(body, heard, Tells::againAndAgain);
}

/// The script's name can't be guessed, since anybody on the bus may call `told`.
QString KWinScripts::run(const QString &body, const Heard &heard, Tells tells) {
    const QString name =
        QStringLiteral("morvane-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto file = std::make_shared<QTemporaryFile>();
    if (file->open()) {
        file->write((beginning.arg(m_bus.baseService(), m_path, name) + body).toUtf8());
        file->close();
    }
    m_scripts[name] = {file, heard, tells};
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
    const auto known = m_scripts.find(script);
    if (known == m_scripts.end()) {
        return;
    }
    const Heard heard = known->second.heard;
    if (known->second.tells == Tells::once) {
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
