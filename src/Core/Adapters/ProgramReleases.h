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

/// Which release of its agent a program on this machine is. No program is run for that: its package
/// tells, or else its own name and the folders that it lies in. What was found out is remembered
/// for each file as long as the file stays the same. Reads small files; for one thread at a time.
class ProgramReleases {
public:
    /// As `Processes::fileOf`.
    using FileOf = std::function<QString(const ProcessIdentity &process, const QString &path)>;

    explicit ProgramReleases(FileOf fileOf = &ourFile) : m_fileOf(std::move(fileOf)) {}

    /// The file of a process that has our files.
    static QString ourFile(const ProcessIdentity &process, const QString &path);

    /// The release of the agent that this file, or the script that it is a link to, belongs to.
    /// None where that doesn't tell, and for an agent of whose releases none is listed.
    std::optional<AgentRelease> of(AgentKind agent, const QString &file);

    /// The same for the file that this process runs, by the path that it has there. What the
    /// process once was it stays, though an update replaces the file or takes it away. A file that
    /// doesn't tell is left alone for a minute.
    std::optional<AgentRelease> of(AgentKind agent, const QString &file,
                                   const ProcessIdentity &process, const Scheduler &clock);

    /// The release that a person's shell would start: that of the first file which tells one, on
    /// the PATH or, as a program of the desktop's may not have that of the shell, where the usual
    /// installers and managers of versions put programs.
    std::optional<AgentRelease> installed(AgentKind agent);

private:
    /// What makes a file the same as before.
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
        QString file = {}; ///< that told the release; empty while none has
        std::optional<AgentRelease> release = {};
        QString missed = {}; ///< the last file that told none
        Date lookedAt = {};  ///< when the look at that one had ended
    };

    static std::optional<Identity> identityOf(const QString &file);
    std::optional<AgentRelease> ofResolved(AgentKind agent, const QString &file);

    FileOf m_fileOf;
    std::map<std::pair<AgentKind, QString>, Known> m_known;
    std::vector<Running> m_running; ///< the last one asked for is the last
};

} // namespace morvane
