#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Agents/ReadableInput.h"
#include "Platform/Time.h"

#include <QList>
#include <QString>

#include <optional>

namespace morvane {

/// A tool call whose hook waits for a yes or a no.
struct PendingApproval {
    QString id; ///< the decision id under which the server has parked the hook
    QString toolName;
    std::optional<QString> detail;  ///< what the tool works on, one line
    ReadableInput input;            ///< all that the tool is given
    Date expiresAt;                 ///< for display: the server reports the expiry itself
    bool allowsRemembering = false; ///< whether the agent can be told to ask no more

    /// Everything that a person may ever choose, in the order of the buttons and the digit keys.
    static QList<AgentDecision> allChoices() {
        return {AgentDecision::deny(), AgentDecision::allow(),
                AgentDecision::allowRemembering(AgentDecision::Scope::session)};
    }

    /// Whether the agent has said what the tool would do.
    bool hasDetails() const { return detail.has_value() || !input.lines.isEmpty(); }

    /// The choices on offer for this call: always the first of `allChoices`, so that each keeps its
    /// digit. A call without details can't be allowed for good.
    QList<AgentDecision> choices() const {
        const auto all = allChoices();
        return allowsRemembering && hasDetails() ? all : all.first(all.size() - 1);
    }

    friend bool operator==(const PendingApproval &, const PendingApproval &) = default;
};

} // namespace morvane
