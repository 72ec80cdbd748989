#pragma once

#include "Core/Agents/AgentKind.h"
#include "Core/Agents/AgentRelease.h"

#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace morvane {

/// Which release of its agent a program on this machine is. No program is run for that: its package
/// tells, or else its own name and the folders that it lies in. What was found out is remembered
/// for each file as long as the file stays the same. Reads small files; for one thread at a time.
class ProgramReleases {
public:
    /// The release of the agent that this file, or the script that it is a link to, belongs to.
    /// None where that doesn't tell, and for an agent of whose releases none is listed.
    std::optional<AgentRelease> of(AgentKind agent, const QString &file);

    /// The release that a person's shell would start: the first that is found on the PATH or, as a
    /// program of the desktop's may not have that of the shell, where the usual installers and
    /// managers of versions put programs.
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
        std::optional<AgentRelease> release;
    };

    static std::optional<Identity> identityOf(const QString &file);

    std::map<std::pair<AgentKind, QString>, Known> m_known;
};

} // namespace morvane
