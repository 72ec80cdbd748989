#pragma once

#include "Core/Agents/TranscriptInfo.h"
#include "Core/Ground/JsonObject.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// What the readers of the agents' transcripts ask of one line. Stateless; safe from any thread.
namespace morvane::TranscriptLine {

/// The string under the key, which lives as long as the object; empty where there is none.
std::string_view word(simdjson::dom::object source, std::string_view key);

/// The integer under the key; one beyond all reason counts as missing.
std::optional<int> integer(simdjson::dom::object source, std::string_view key);

/// A count of something; none where there is nothing to count, or beyond all reason.
std::optional<int> positive(std::int64_t count);

/// The blocks of a message's content.
std::vector<simdjson::dom::object> contentOf(simdjson::dom::object message);

/// The first and the last text of the blocks that is fit for a person, as one line.
std::optional<QString> firstText(const std::vector<simdjson::dom::object> &blocks);
std::optional<QString> lastText(const std::vector<simdjson::dom::object> &blocks);

/// When the line was written, as far as it says so.
std::optional<Date> timeOf(const JsonObject &line);

/// How the line leaves its turn, unless a newer one has told.
void fillTurn(const JsonObject &line, std::optional<TranscriptInfo::Turn> turn,
              TranscriptInfo &info);

/// Lines come newest first, so what is there stays.
template <typename Value>
void fill(std::optional<Value> &field, const std::optional<Value> &value) {
    if (!field) {
        field = value;
    }
}

} // namespace morvane::TranscriptLine
