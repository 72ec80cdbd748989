#pragma once

#include <QString>

#include <optional>

namespace morvane {

/// One choice that an agent offers with a question. Its label identifies it.
struct AgentOption {
    QString label;
    std::optional<QString> description;

    friend bool operator==(const AgentOption &, const AgentOption &) = default;
};

} // namespace morvane
