#pragma once

#include <QCoreApplication>
#include <QStringList>

namespace morvane {

/// The state of the feed from an agent's status line.
enum class StatusLineHealth {
    notApplicable, ///< the agent has no such feed
    connected,
    scriptMissing, ///< the setting is ours, but its script can't be run
    ownedByOther,  ///< the status line is another tool's, which is no fault
    absent,
};

/// The state of one agent's connection, from its files at the time of asking. An agent that isn't
/// connected is healthy, unless its settings can't be read.
struct Health {
    Q_DECLARE_TR_FUNCTIONS(Health)

public:
    bool settingsReadable = true;
    bool hooksPresent = false;
    bool entriesCurrent = true;
    bool scriptExecutable = true;
    StatusLineHealth statusLine = StatusLineHealth::notApplicable;

    /// The agent doesn't run our new hooks until its person has agreed to them. A repair can't
    /// change that.
    bool awaitsReview = false;

    /// The agent runs no hooks at all: its person has switched them off in the settings file that
    /// holds them. A repair leaves that as it is.
    bool hooksSwitchedOff = false;

    /// The agent's own desktop notifications are off, connected or not. This is no fault either.
    bool notificationsSuppressed = false;

    /// What is wrong, a phrase each, for a person.
    QStringList issues() const;

    friend bool operator==(const Health &, const Health &) = default;
};

} // namespace morvane
