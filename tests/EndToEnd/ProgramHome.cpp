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
    m_environment.insert(QStringLiteral("HOME"), m_folder.path());
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder(".config"));
    m_environment.insert(QStringLiteral("XDG_DATA_HOME"), folder(".local/share"));
    m_environment.insert(QStringLiteral("XDG_CACHE_HOME"), folder(".cache"));
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder("run"));
    m_environment.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
    m_environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));

    QJsonObject all{{QStringLiteral("eventServerPort"), freePort()},
                    {QStringLiteral("hasCompletedFirstRun"), true},
                    {QStringLiteral("installPingEnabled"), false},
                    {QStringLiteral("usageEnabled"), false},
                    {QStringLiteral("SUEnableAutomaticChecks"), false}};
    for (auto entry = settings.begin(); entry != settings.end(); ++entry) {
        all.insert(entry.key(), entry.value());
    }
    // A connection of an older version: at its start the program writes its scripts for those who
    // are connected.
    write(QStringLiteral(".claude/settings.json"),
          R"({"hooks":{"Stop":[{"command":".morvane/hook.sh claude"}]}})");
    write(QStringLiteral(".config/morvane/io.morvane.morvane.json"), QJsonDocument(all).toJson());
}

void ProgramHome::write(const QString &relative, const QByteArray &bytes) const {
    QDir().mkpath(QFileInfo(path(relative)).path());
    QFile file(path(relative));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
}

QStringList ProgramHome::hook(const QStringList &arguments) const {
    return QStringList{path(QStringLiteral(".morvane/hook.sh"))} + arguments;
}

bool ProgramHome::waitForHook() const {
    return waitUntil([this] { return QFile::exists(path(QStringLiteral(".morvane/hook.sh"))); });
}

} // namespace morvane
