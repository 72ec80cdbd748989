#include "Core/Adapters/GeminiTranscript.h"

#include "Core/Agents/TranscriptLine.h"

#include <QDateTime>

#include <algorithm>
#include <chrono>

namespace morvane::GeminiTranscript {

namespace {

using namespace TranscriptLine;
using Turn = TranscriptInfo::Turn;

/// The person's other lines bring a tool's result.
bool isTyped(const JsonObject &line) {
    return std::ranges::any_of(contentOf(line.root()), [](simdjson::dom::object block) {
        return !word(block, "text").empty();
    });
}

std::optional<Date> timeOf(const JsonObject &line) {
    const QDateTime time =
        QDateTime::fromString(line.string("timestamp").value_or(QString()), Qt::ISODateWithMs);
    return time.isValid() ? std::optional(Date(std::chrono::milliseconds(time.toMSecsSinceEpoch())))
                          : std::nullopt;
}

/// Where a question was interrupted, Gemini CLI at once writes down all that was said before, as if
/// it were said now. No person types so quickly.
bool isFollowedByCopies(const JsonObject &interruption, const TranscriptInfo &info) {
    constexpr std::chrono::seconds quick(1);
    const auto at = timeOf(interruption);
    return at && info.promptedAt && *info.promptedAt - *at < quick;
}

} // namespace

/// A line of another kind may repeat what was there before.
void takeLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    if (type == "info" && word(line.root(), "content") == "Request cancelled.") {
        if (!info.turn || isFollowedByCopies(line, info)) {
            info.turn = Turn::interrupted;
            info.promptedAt.reset();
        }
    } else if (info.turn) {
        return;
    } else if (type == "error") {
        info.turn = Turn::failed;
        info.failure = TranscriptReader::displayLine(line.string("content"));
    } else if (type == "user" && isTyped(line)) {
        info.turn = Turn::running;
        info.promptedAt = timeOf(line);
    }
}

/// A tool that the person has cancelled ends the turn.
void takeLineOfQwen(const JsonObject &line, TranscriptInfo &info) {
    if (word(line.root(), "type") == "assistant" ||
        word(line.root(), "provenance") == "real_user") {
        fill(info.turn, std::optional(Turn::running));
        return;
    }
    const auto payload = JsonObject::object(line.root(), "systemPayload");
    const auto event = payload ? JsonObject::object(*payload, "uiEvent") : std::nullopt;
    if (event && word(*event, "event.name") == "qwen-code.tool_call" &&
        word(*event, "status") == "cancelled" && word(*event, "subagent_name").empty()) {
        fill(info.turn, std::optional(Turn::interrupted));
    }
}

} // namespace morvane::GeminiTranscript
