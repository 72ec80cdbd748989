#pragma once

#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

/// What a transcript tells of its session; each field is absent where the part that was read
/// doesn't say.
struct TranscriptInfo {
    /// The state of the newest turn, where the agent records it.
    enum class Turn { running, ended, interrupted, failed };

    std::optional<QString> model;
    std::optional<QString> lastAssistantText; ///< one line
    std::optional<int> contextTokens;         ///< of the last request
    std::optional<QString> permissionMode;
    std::optional<QString> title; ///< one line
    // `isComplete` ignores these.
    std::optional<Turn> turn = std::nullopt;
    std::optional<QString> failure = std::nullopt; ///< one line, for a failed turn
    std::optional<Date> turnAt = std::nullopt;     ///< when the turn entered this state

    bool isComplete() const {
        return model && lastAssistantText && contextTokens && permissionMode && title;
    }

    friend bool operator==(const TranscriptInfo &, const TranscriptInfo &) = default;
};

} // namespace morvane
