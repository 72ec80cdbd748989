#pragma once

#include "Core/Agents/HookWait.h"

#include <QString>
#include <QStringList>
#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace morvane {

class AgentAdapter;

/// Which hooks an agent gets, and what they say. A value; the adapter must outlive it.
class HookPlan {
public:
    /// A part of the command line by which a command is known to be ours, whatever version, port or
    /// home folder it is from.
    static constexpr char hookScriptMarker[] = ".morvane/hook.sh";

    /// What stands in every text that has that, also where its writer puts "\/" for a slash.
    static constexpr char hookScriptName[] = "hook.sh";

    /// With `approvalsEnabled` the hooks that can bring a decision wait for it.
    HookPlan(const AgentAdapter &adapter, bool approvalsEnabled);

    /// The same for another form of the agent.
    HookPlan of(const AgentAdapter &form) const { return {form, m_approvalsEnabled}; }

    /// The native events to hook, in the order in which they are installed.
    QStringList installedEvents() const;

    /// The command line of the event's hook. The event stands in it, since an agent's payload may
    /// not name it.
    QString command(const QString &event) const;

    /// True for an event that this release of the agent has, be it hooked only with approvals.
    bool knows(const QString &event) const;

    std::optional<QString> matcher(const QString &event) const;

    HookWait wait(const QString &event) const;

    /// What stands in a JSON settings file for the event.
    nlohmann::json entry(const QString &event) const;

    /// True for what would stand there for another release of the agent, and not for this one.
    bool isOfAnotherRelease(const QString &event, const nlohmann::json &entry) const;

    /// True when an entry that is right must stay as and where it is: the agent's person would have
    /// to review it again.
    bool keepsEntries() const;

private:
    bool isDecisionEvent(const QString &event) const;

    const AgentAdapter &m_adapter;
    bool m_approvalsEnabled;
    bool m_decides;
};

} // namespace morvane
