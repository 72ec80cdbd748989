#pragma once

#include "Core/Agents/AgentQuestion.h"

namespace morvane {

/// A prompt that can only be answered in the agent's own terminal.
struct PendingExternalResponse {
    QList<AgentQuestion> questions;         ///< empty when the agent sent none
    std::optional<QString> fallbackMessage; ///< the agent's own words

    friend bool operator==(const PendingExternalResponse &,
                           const PendingExternalResponse &) = default;
};

} // namespace morvane
