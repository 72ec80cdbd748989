#pragma once

#include "Platform/Time.h"

#include <QString>

#include <optional>

namespace morvane {

/// What a transcript tells of its session; each field is absent where the part that was read
/// doesn't say.
struct TranscriptInfo {
    /// How the newest turn stands, where the agent notes that.
    enum class Turn { running, ended, interrupted, failed };

    std::optional<QString> model;
    std::optional<QString> lastAssistantText; ///< one line
    std::optional<int> contextTokens;         ///< of the last request
    std::optional<QString> permissionMode;
    std::optional<QString> title; ///< one line
    // Of no account for `isComplete`.
    std::optional<Turn> turn = std::nullopt;
    std::optional<QString> failure = std::nullopt; ///< one line, of a turn that has failed
    std::optional<Date> turnAt = std::nullopt;     ///< when it came to stand so

    bool isComplete() const {
        return model && lastAssistantText && contextTokens && permissionMode && title;
    }

    friend bool operator==(const TranscriptInfo &, const TranscriptInfo &) = default;
};

} // namespace morvane
