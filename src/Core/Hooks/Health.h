#pragma once

#include <QCoreApplication>
#include <QStringList>

namespace morvane {

/// How it stands with the feed from an agent's status line.
enum class StatusLineHealth {
    notApplicable, ///< the agent has no such feed
    connected,
    scriptMissing, ///< the setting is ours, the script that it names can't be run
    ownedByOther,  ///< another tool's, which is no fault
    absent,
};

/// How it stands with the connection of one agent, as its files were when it was asked for. An
/// agent that isn't connected is healthy, unless its settings can't be read.
struct Health {
    Q_DECLARE_TR_FUNCTIONS(Health)

public:
    bool settingsReadable = true;
    bool hooksPresent = false;
    bool entriesCurrent = true;
    bool scriptExecutable = true;
    StatusLineHealth statusLine = StatusLineHealth::notApplicable;

    /// The agent runs none of our hooks that are new to it before its person has agreed to them.
    /// Nothing that a repair could mend.
    bool awaitsReview = false;

    /// The agent runs no hooks at all, since its person has switched them off in the settings that
    /// they stand in. Nothing that a repair would touch.
    bool hooksSwitchedOff = false;

    /// The agent's own desktop notifications are off, be it connected or not. No fault either.
    bool notificationsSuppressed = false;

    /// What is wrong, a phrase each, for a person.
    QStringList issues() const;

    friend bool operator==(const Health &, const Health &) = default;
};

} // namespace morvane
