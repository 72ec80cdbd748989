#include "Core/HookInstaller.h"

#include "Core/MorvaneSettings.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace morvane {

namespace {

/// Mode 0755.
constexpr QFile::Permissions scriptMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                          QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                          QFile::ExeOther;
constexpr QFile::Permissions folderMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

std::optional<Failure> makeScriptFolder() {
    const QString folder = HookInstaller::scriptFolder();
    if (!QDir().mkpath(folder)) {
        return Failure{QStringLiteral("%1 could not be created").arg(folder)};
    }
    QFile::setPermissions(folder, folderMode);
    return std::nullopt;
}

std::optional<Failure> writeExecutable(const QString &path, const QByteArray &content) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return Failure{file.errorString()};
    }
    file.setPermissions(scriptMode);
    file.write(content);
    return file.commit() ? std::nullopt : std::optional(Failure{file.errorString()});
}

std::optional<QByteArray> contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

} // namespace

HookInstaller::HookInstaller(const MorvaneSettings &settings, std::uint16_t boundPort)
    : m_settings(settings), m_boundPort(boundPort) {}

QString HookInstaller::scriptFolder() {
    return QDir::homePath() + QLatin1String("/.morvane");
}

std::optional<Failure> HookInstaller::writeHookScript() const {
    if (const auto failure = makeScriptFolder()) {
        return failure;
    }
    // The client goes first: a script may find a client that is too new, but never one too old.
    if (const auto failure = writeForwarder()) {
        return failure;
    }
    return writeScript(QStringLiteral("hook.sh"), scriptFolder() + QLatin1String("/hook.sh"));
}

Result<QString> HookInstaller::renderTemplate(const QString &name) const {
    const auto content = contentOf(QStringLiteral(":/templates/%1.template").arg(name));
    if (!content) {
        return Failure{name + QLatin1String(".template missing from bundle")};
    }
    QString text = QString::fromUtf8(*content);
    text.replace(QLatin1String("__PORT__"), QString::number(m_boundPort));
    text.replace(QLatin1String("__TOKEN__"), m_settings.eventToken());
    return text;
}

std::optional<Failure> HookInstaller::writeScript(const QString &name, const QString &path) const {
    const Result<QString> text = renderTemplate(name);
    if (const auto *failure = std::get_if<Failure>(&text)) {
        return *failure;
    }
    return writeExecutable(path, std::get<QString>(text).toUtf8());
}

/// Written only where it differs: a program that is running can't be opened for writing, and every
/// rewrite would throw away what the system keeps of it in memory.
std::optional<Failure> HookInstaller::writeForwarder() const {
    const auto client = contentOf(QStringLiteral(":/templates/forwarder"));
    if (!client) {
        return Failure{QStringLiteral("forwarder missing from bundle")};
    }
    const QString path = scriptFolder() + QLatin1String("/forwarder");
    return contentOf(path) == client ? std::nullopt : writeExecutable(path, *client);
}

} // namespace morvane
