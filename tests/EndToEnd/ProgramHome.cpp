#include "EndToEnd/ProgramHome.h"

#include "Support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>

namespace morvane {

namespace {

/// A port that nobody listens on, and that the system gives to nobody else for a while.
int freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

} // namespace

ProgramHome::ProgramHome() {
    const auto folder = [this](const char *name) {
        const QString result = path(QLatin1String(name));
        QDir().mkpath(result);
        QFile::setPermissions(result, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return result;
    };
    m_environment.insert("HOME", path());
    m_environment.insert("XDG_CONFIG_HOME", folder(".config"));
    m_environment.insert("XDG_DATA_HOME", folder(".local/share"));
    m_environment.insert("XDG_CACHE_HOME", folder(".cache"));
    m_environment.insert("XDG_RUNTIME_DIR", folder("run"));
    m_environment.insert("PATH", qEnvironmentVariable("PATH"));
    m_environment.insert("LANG", "C.UTF-8");
    m_environment.insert("LSAN_OPTIONS", qEnvironmentVariable("LSAN_OPTIONS"));

    const QJsonObject settings{{"eventServerPort", freePort()}, {"hasCompletedFirstRun", true},
                               {"installPingEnabled", false},   {"usageEnabled", false},
                               {"showWhenIdle", true},          {"SUEnableAutomaticChecks", false}};
    // An agent that an older version has connected: the program writes its scripts at the start if
    // any agent is connected.
    write(".claude/settings.json", R"({"hooks":{"Stop":[{"command":".morvane/hook.sh claude"}]}})");
    write(".config/morvane/io.morvane.morvane.json", QJsonDocument(settings).toJson());
}

QStringList ProgramHome::hook(const QStringList &arguments) const {
    return QStringList{path(".morvane/hook.sh")} + arguments;
}

bool ProgramHome::waitForHook() const {
    return waitUntil([this] { return QFile::exists(path(".morvane/hook.sh")); });
}

} // namespace morvane
