#include "Core/Agents/TranscriptLine.h"

#include "Core/Agents/TranscriptReader.h"

#include <QDateTime>

#include <chrono>
#include <utility>

namespace morvane::TranscriptLine {

using simdjson::dom::object;
using TranscriptReader::displayLine;

namespace {

template <typename Block>
std::optional<QString> firstOf(Block begin, Block end) {
    for (Block block = begin; block != end; ++block) {
        if (const auto line = displayLine(JsonObject::string(*block, "text"))) {
            return line;
        }
    }
    return std::nullopt;
}

} // namespace

std::string_view word(object source, std::string_view key) {
    std::string_view result;
    return source[key].get(result) == simdjson::SUCCESS ? result : std::string_view();
}

std::optional<int> integer(object source, std::string_view key) {
    std::int64_t value = 0;
    const bool isInteger = source[key].get(value) == simdjson::SUCCESS;
    return isInteger && std::in_range<int>(value) ? std::optional(static_cast<int>(value))
                                                  : std::nullopt;
}

std::optional<int> positive(std::int64_t count) {
    return count >= 1 && std::in_range<int>(count) ? std::optional(static_cast<int>(count))
                                                   : std::nullopt;
}

std::vector<object> contentOf(object message) {
    return JsonObject::objects(message, "content").value_or(std::vector<object>());
}

std::optional<QString> firstText(const std::vector<object> &blocks) {
    return firstOf(blocks.begin(), blocks.end());
}

std::optional<QString> lastText(const std::vector<object> &blocks) {
    return firstOf(blocks.rbegin(), blocks.rend());
}

std::optional<Date> timeOf(const JsonObject &line) {
    const QDateTime time =
        QDateTime::fromString(line.string("timestamp").value_or(QString()), Qt::ISODateWithMs);
    return time.isValid() ? std::optional(Date(std::chrono::milliseconds(time.toMSecsSinceEpoch())))
                          : std::nullopt;
}

void fillTurn(const JsonObject &line, std::optional<TranscriptInfo::Turn> turn,
              TranscriptInfo &info) {
    if (turn && !info.turn) {
        info.turn = turn;
        info.turnAt = timeOf(line);
    }
}

} // namespace morvane::TranscriptLine
