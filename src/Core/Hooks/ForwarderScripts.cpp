#include "Core/Hooks/ForwarderScripts.h"

#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QResource>

#include <sys/types.h>

namespace morvane {

namespace {

constexpr QLatin1String hookScript("hook.sh");
constexpr QLatin1String statusLineScript("statusline.sh");
constexpr QLatin1String templates(":/templates");

constexpr mode_t scriptMode = 0755;
constexpr QFile::Permissions folderMode = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

QString pathOf(const QString &name) {
    return ForwarderScripts::folder() + QLatin1Char('/') + name;
}

bool isExecutable(const QString &name) {
    const QFileInfo script(pathOf(name));
    return script.isFile() && script.isExecutable();
}

Result<void> makeScriptFolder() {
    const QString folder = ForwarderScripts::folder();
    if (!QDir().mkpath(folder)) {
        return Failure{ForwarderScripts::tr("%1 could not be created").arg(folder)};
    }
    QFile::setPermissions(folder, folderMode);
    return {};
}

Result<void> writeExecutable(const QString &path, const QByteArray &content) {
    WholeFile file(path);
    file.setMode(scriptMode);
    const auto written = file.write(content);
    return written ? written : cannotWrite(path, written.error());
}

std::optional<QByteArray> builtIn(const QString &path) {
    const QResource resource(path);
    return resource.isValid() ? std::optional(resource.uncompressedData()) : std::nullopt;
}

/// Clients are named after their processor. Written only where one differs: a rewrite would drop it
/// from the page cache. A build for a processor without a client contains none. Qt would filter
/// names by regular expressions, the first of which takes half a megabyte.
Result<void> writeClients() {
    const QDir clients(templates);
    for (const QString &name : clients.entryList()) {
        if (!name.startsWith(QLatin1String("forwarder-"))) {
            continue;
        }
        const QByteArray client = builtIn(clients.filePath(name)).value_or(QByteArray());
        const auto written = RegularFile::whole(pathOf(name));
        const QFileInfo present(pathOf(name));
        // If the clock was set back since, the client would stay newer than every script.
        const bool isCurrent = written && *written == client && isExecutable(name) &&
                               !present.isSymbolicLink() &&
                               present.lastModified() <= QDateTime::currentDateTime();
        if (isCurrent) {
            continue;
        }
        if (const auto renewed = writeExecutable(pathOf(name), client); !renewed) {
            return renewed;
        }
    }
    return {};
}

} // namespace

ForwarderScripts::ForwarderScripts(QString token, std::uint16_t port)
    : m_token(std::move(token)), m_port(port) {}

QString ForwarderScripts::folder() {
    return QDir::homePath() + QLatin1String("/.morvane");
}

bool ForwarderScripts::isHookScriptExecutable() {
    return isExecutable(hookScript);
}

bool ForwarderScripts::isStatusLineScriptExecutable() {
    return isExecutable(statusLineScript);
}

Result<void> ForwarderScripts::writeHookScript() const {
    if (const auto made = makeScriptFolder(); !made) {
        return made;
    }
    // The client goes first: a script may find a client that is too new, but never one too old,
    // and it does not trust one that has been written to after the script.
    if (const auto written = writeClients(); !written) {
        return written;
    }
    return writeScript(hookScript);
}

Result<void> ForwarderScripts::writeStatusLineScript() const {
    return writeScript(statusLineScript);
}

void ForwarderScripts::removeStatusLineScript() {
    QFile::remove(pathOf(statusLineScript));
}

Result<QString> ForwarderScripts::renderTemplate(const QString &name) const {
    const auto content = builtIn(QStringLiteral("%1/%2.template").arg(templates, name));
    if (!content) {
        return Failure{tr("%1.template missing from bundle").arg(name)};
    }
    QString text = QString::fromUtf8(*content);
    text.replace(QLatin1String("__PORT__"), QString::number(m_port));
    text.replace(QLatin1String("__TOKEN__"), m_token);
    return text;
}

Result<void> ForwarderScripts::writeScript(const QString &name) const {
    const Result<QString> text = renderTemplate(name);
    if (!text) {
        return text.error();
    }
    if (const auto made = makeScriptFolder(); !made) {
        return made;
    }
    return writeExecutable(pathOf(name), text->toUtf8());
}

} // namespace morvane
