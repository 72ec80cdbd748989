#include "EndToEnd/ProgramHome.h"

#include "Support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
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

ProgramHome::ProgramHome(const QJsonObject &settings) {
    const auto folder = [this](const char *name) {
        QDir().mkpath(path(QLatin1String(name)));
        QFile::setPermissions(path(QLatin1String(name)),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path(QLatin1String(name));
    };
    m_environment.insert("HOME", m_folder.path());
    m_environment.insert("XDG_CONFIG_HOME", folder(".config"));
    m_environment.insert("XDG_DATA_HOME", folder(".local/share"));
    m_environment.insert("XDG_CACHE_HOME", folder(".cache"));
    m_environment.insert("XDG_RUNTIME_DIR", folder("run"));
    m_environment.insert("PATH", qEnvironmentVariable("PATH"));
    m_environment.insert("LANG", "C.UTF-8");

    QJsonObject all{{"eventServerPort", freePort()},
                    {"hasCompletedFirstRun", true},
                    {"installPingEnabled", false},
                    {"usageEnabled", false},
                    {"SUEnableAutomaticChecks", false}};
    for (auto entry = settings.begin(); entry != settings.end(); ++entry) {
        all.insert(entry.key(), entry.value());
    }
    // A connection of an older version: at its start the program writes its scripts for those who
    // are connected.
    write(".claude/settings.json", R"({"hooks":{"Stop":[{"command":".morvane/hook.sh claude"}]}})");
    write(".config/morvane/io.morvane.morvane.json", QJsonDocument(all).toJson());
}

void ProgramHome::write(const QString &relative, const QByteArray &bytes) const {
    QDir().mkpath(QFileInfo(path(relative)).path());
    QFile file(path(relative));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
}

QStringList ProgramHome::hook(const QStringList &arguments) const {
    return QStringList{path(".morvane/hook.sh")} + arguments;
}

bool ProgramHome::waitForHook() const {
    return waitUntil([this] { return QFile::exists(path(".morvane/hook.sh")); });
}

} // namespace morvane
