#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentRelease.h"
#include "Platform/Processes.h"
#include "Platform/Time.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace morvane {

class Scheduler;

/// Finds out which release of an agent a program on this machine is, without running it: from its
/// package, or else from its own name and its folders. The result is cached for each file as long
/// as the file stays the same. Reads small files; for one thread at a time.
class ProgramReleases {
public:
    /// As `Processes::fileOf`.
    using FileOf = std::function<QString(const ProcessIdentity &process, const QString &path)>;

    explicit ProgramReleases(FileOf fileOf = &ourFile) : m_fileOf(std::move(fileOf)) {}

    /// The `FileOf` for a process that sees the same files as we do.
    static QString ourFile(const ProcessIdentity &process, const QString &path);

    /// The release of the agent that this file, or the target of this link, belongs to. None where
    /// that can't be told, and for an agent without listed releases.
    std::optional<AgentRelease> of(AgentKind agent, const QString &file);

    /// The same for the file that this process runs, by the path that it has there. A process keeps
    /// its release when an update replaces or removes the file. A file that doesn't tell is left
    /// alone for a minute.
    std::optional<AgentRelease> of(AgentKind agent, const QString &file,
                                   const ProcessIdentity &process, const Scheduler &clock);

    /// The release that a person's shell would start: that of the first file that tells one, on the
    /// PATH or where common installers and version managers put programs, since a desktop program
    /// may lack the shell's PATH.
    std::optional<AgentRelease> installed(AgentKind agent);

private:
    /// Equal as long as a file stays the same.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t file = 0;
        std::int64_t changed = 0; ///< nanoseconds

        friend bool operator==(const Identity &, const Identity &) = default;
    };
    struct Known {
        Identity identity;
        AgentRelease release;
    };

    struct Running {
        AgentKind agent;
        ProcessIdentity process;
        QString file = {}; ///< the file that told the release; empty while none has
        std::optional<AgentRelease> release = {};
        QString missed = {}; ///< the last file that told none
        Date lookedAt = {};  ///< when that file had been read
    };

    static std::optional<Identity> identityOf(const QString &file);
    std::optional<AgentRelease> ofResolved(AgentKind agent, const QString &file);

    FileOf m_fileOf;
    std::map<std::pair<AgentKind, QString>, Known> m_known;
    std::vector<Running> m_running; ///< the last one asked for comes last
};

} // namespace morvane
