#include "Core/Adapters/ProgramReleases.h"

#include "Core/Adapters/AgentReleases.h"
#include "Core/Ground/JsonObject.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Ground/ToolPaths.h"
#include "Platform/Scheduler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <sys/stat.h>

namespace morvane {

namespace {

using AgentReleases::Program;

constexpr qsizetype longestPackageFile = 262'144;
constexpr int highestPackage = 6; ///< folders above the program

/// More programs than anybody has, and more agents than run at one time. Beyond it the cache of
/// programs begins anew.
constexpr std::size_t mostKnown = 64;

/// A file that tells nothing may be slow to read, such as on a file server that is gone.
constexpr Seconds missLimit(60);

std::optional<AgentRelease> releaseOfPackage(const QString &file, const QString &package) {
    const auto text = RegularFile::head(file, longestPackageFile);
    const auto root = text ? JsonObject::parse(*text) : std::nullopt;
    const auto name = root ? root->string("name") : std::nullopt;
    const auto version = root ? root->string("version") : std::nullopt;
    const bool isThis = name && (*name == package || name->startsWith(package + QLatin1Char('-')));
    return isThis && version ? AgentRelease::parse(*version) : std::nullopt;
}

/// Installers without a package name a file or a folder of their own after each release.
std::optional<AgentRelease> releaseInPath(const QString &path, const QString &command) {
    QStringList parts =
        path.split(QLatin1Char('/')).last(std::min<qsizetype>(path.count(QLatin1Char('/')), 4));
    if (!parts.contains(command)) {
        return std::nullopt;
    }
    for (; !parts.isEmpty(); parts.removeLast()) {
        if (const auto release = AgentRelease::parse(parts.last())) {
            return release;
        }
    }
    return std::nullopt;
}

/// Goes up the path as text. Its only link may be that to a process's root, which must not be
/// resolved: it would lead into our own root.
std::optional<AgentRelease> read(const Program &program, const QString &path) {
    QString folder = path.section(QLatin1Char('/'), 0, -2);
    for (int level = 0; level < highestPackage && !folder.isEmpty(); ++level) {
        const auto release =
            releaseOfPackage(folder + QLatin1String("/package.json"), program.package);
        if (release) {
            return release;
        }
        folder = folder.section(QLatin1Char('/'), 0, -2);
    }
    return releaseInPath(path, program.command);
}

/// Where a shell would look for the program, in order, followed by the places that a shell only
/// knows from its startup files.
QStringList places(const Program &program) {
    QStringList result;
    const QStringList path = qEnvironmentVariable("PATH").split(QLatin1Char(':'));
    for (const QString &folder : path) {
        if (folder.startsWith(QLatin1Char('/'))) {
            result << folder + QLatin1Char('/') + program.command;
        }
    }
    result << ToolPaths::inHome(program.command);
    // These managers only put a script of their own on the PATH.
    for (const char *folder : {".local/share/pnpm/global/*/node_modules/%1",
                               ".volta/tools/image/packages/%1/lib/node_modules/%1"}) {
        result << ToolPaths::fitting(
            QStringLiteral("%1/%2/package.json")
                .arg(QDir::homePath(), QString::fromLatin1(folder).arg(program.package)));
    }
    return result;
}

} // namespace

std::optional<ProgramReleases::Identity> ProgramReleases::identityOf(const QString &file) {
    struct stat status {};
    if (::stat(QFile::encodeName(file).constData(), &status) != 0) {
        return std::nullopt;
    }
    return Identity{status.st_dev, status.st_ino,
                    status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

QString ProgramReleases::ourFile(const ProcessIdentity &, const QString &path) {
    return QFileInfo(path).canonicalFilePath();
}

std::optional<AgentRelease> ProgramReleases::of(AgentKind agent, const QString &file) {
    return file.startsWith(QLatin1Char('/')) ? ofResolved(agent, ourFile({}, file)) : std::nullopt;
}

std::optional<AgentRelease> ProgramReleases::ofResolved(AgentKind agent, const QString &file) {
    const auto program = AgentReleases::program(agent);
    const auto identity = program ? identityOf(file) : std::nullopt;
    if (!identity) {
        return std::nullopt;
    }
    const std::pair key(agent, file);
    const auto known = m_known.find(key);
    if (known != m_known.end() && known->second.identity == *identity) {
        return known->second.release;
    }
    const auto release = read(*program, file);
    if (release) { // without one the package may still be installing
        if (m_known.size() >= mostKnown) {
            m_known.clear();
        }
        m_known.insert_or_assign(key, Known{*identity, *release});
    }
    return release;
}

std::optional<AgentRelease> ProgramReleases::of(AgentKind agent, const QString &file,
                                                const ProcessIdentity &process,
                                                const Scheduler &clock) {
    if (!AgentReleases::program(agent)) {
        return std::nullopt;
    }
    const auto known = std::ranges::find_if(m_running, [&](const Running &running) {
        return running.agent == agent && running.process == process;
    });
    if (known != m_running.end()) {
        std::rotate(known, known + 1, m_running.end());
    } else {
        if (m_running.size() >= mostKnown) {
            m_running.erase(m_running.begin());
        }
        m_running.push_back({agent, process});
    }
    Running &running = m_running.back();
    const bool isKnownMiss =
        running.missed == file && std::chrono::abs(clock.now() - running.lookedAt) < missLimit;
    if (running.file == file || isKnownMiss) {
        return running.release;
    }
    const bool isAbsolute = file.startsWith(QLatin1Char('/'));
    const QString there = isAbsolute ? m_fileOf(process, file) : QString();
    if (const auto release = ofResolved(agent, there)) {
        running.file = file;
        running.release = release;
    } else {
        running.missed = file;
        running.lookedAt = clock.now();
    }
    return running.release;
}

std::optional<AgentRelease> ProgramReleases::installed(AgentKind agent) {
    const auto program = AgentReleases::program(agent);
    if (!program) {
        return std::nullopt;
    }
    for (const QString &place : places(*program)) {
        if (const auto release = of(agent, place)) {
            return release;
        }
    }
    return std::nullopt;
}

} // namespace morvane
