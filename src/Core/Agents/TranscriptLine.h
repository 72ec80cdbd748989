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

/// The integer under the key; one that an int can't hold counts as missing.
std::optional<int> integer(simdjson::dom::object source, std::string_view key);

/// The count; none where it is below 1 or an int can't hold it.
std::optional<int> positive(std::int64_t count);

/// The blocks of a message's content.
std::vector<simdjson::dom::object> contentOf(simdjson::dom::object message);

/// The first and the last text of the blocks that is fit for a person, as one line.
std::optional<QString> firstText(const std::vector<simdjson::dom::object> &blocks);
std::optional<QString> lastText(const std::vector<simdjson::dom::object> &blocks);

/// When the line was written, as far as it says so.
std::optional<Date> timeOf(const JsonObject &line);

/// Fills in the turn's state after this line, unless a newer line has told it.
void fillTurn(const JsonObject &line, std::optional<TranscriptInfo::Turn> turn,
              TranscriptInfo &info);

/// Lines come newest first, so a field that is set stays.
template <typename Value>
void fill(std::optional<Value> &field, const std::optional<Value> &value) {
    if (!field) {
        field = value;
    }
}

} // namespace morvane::TranscriptLine
