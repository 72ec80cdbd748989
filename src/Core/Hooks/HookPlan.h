#pragma once

#include "Core/Agents/HookWait.h"

#include <QString>
#include <QStringList>
#include <nlohmann/json_fwd.hpp>

#include <optional>

namespace morvane {

class AgentAdapter;

/// Which hooks an agent gets, and what their entries hold. A value; the adapter must outlive it.
class HookPlan {
public:
    /// The part of a command line that marks it as ours, whatever version, port or home folder it
    /// is from.
    static constexpr char hookScriptMarker[] = ".morvane/hook.sh";

    /// A part of the marker that stays the same where a writer escapes slashes as "\/".
    static constexpr char hookScriptName[] = "hook.sh";

    /// With `approvalsEnabled` the hooks that can bring a decision wait for it.
    HookPlan(const AgentAdapter &adapter, bool approvalsEnabled);

    /// The same for another form of the agent.
    HookPlan of(const AgentAdapter &form) const { return {form, m_approvalsEnabled}; }

    /// The native events to hook, in the order in which they are installed.
    QStringList installedEvents() const;

    /// The command line of the event's hook. It names the event, since the agent's payload may not.
    QString command(const QString &event) const;

    /// True for an event that this release of the agent has, even if hooked only with approvals.
    bool knows(const QString &event) const;

    std::optional<QString> matcher(const QString &event) const;

    HookWait wait(const QString &event) const;

    /// The event's entry in a JSON settings file.
    nlohmann::json entry(const QString &event) const;

    /// True for an entry that another release of the agent would get, and this one wouldn't.
    bool isOfAnotherRelease(const QString &event, const nlohmann::json &entry) const;

    /// True when a correct entry must keep its content and its place, since the agent's person
    /// would otherwise have to review it again.
    bool keepsEntries() const;

private:
    bool isDecisionEvent(const QString &event) const;

    const AgentAdapter &m_adapter;
    bool m_approvalsEnabled;
    bool m_decides;
};

} // namespace morvane
