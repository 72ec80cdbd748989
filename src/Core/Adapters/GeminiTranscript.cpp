#include "Core/Adapters/GeminiTranscript.h"

#include "Core/Agents/TranscriptLine.h"

#include <algorithm>
#include <chrono>

namespace morvane::GeminiTranscript {

namespace {

using namespace TranscriptLine;
using Turn = TranscriptInfo::Turn;

/// A person's line without text holds a tool's result.
bool isTyped(const JsonObject &line) {
    return std::ranges::any_of(contentOf(line.root()), [](simdjson::dom::object block) {
        return !word(block, "text").empty();
    });
}

/// After an interrupted question Gemini CLI at once writes everything said before again, with the
/// current time. No person types a prompt so quickly.
bool isFollowedByCopies(const JsonObject &interruption, const TranscriptInfo &info) {
    constexpr std::chrono::seconds quick(1);
    const auto at = timeOf(interruption);
    return info.turn == Turn::running && at && info.turnAt && *info.turnAt - *at < quick;
}

} // namespace

/// Lines of other kinds are ignored, since they may repeat earlier ones.
void takeLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    if (type == "info" && word(line.root(), "content") == "Request cancelled.") {
        if (!info.turn || isFollowedByCopies(line, info)) {
            info.turn.reset();
            fillTurn(line, Turn::interrupted, info);
        }
    } else if (info.turn) {
        return;
    } else if (type == "error") {
        fillTurn(line, Turn::failed, info);
        info.failure = TranscriptReader::displayLine(line.string("content"));
    } else if (type == "user" && isTyped(line)) {
        fillTurn(line, Turn::running, info);
    }
}

/// A tool that the person has cancelled ends the turn.
void takeLineOfQwen(const JsonObject &line, TranscriptInfo &info) {
    if (word(line.root(), "type") == "assistant" ||
        word(line.root(), "provenance") == "real_user") {
        fillTurn(line, Turn::running, info);
        return;
    }
    const auto payload = JsonObject::object(line.root(), "systemPayload");
    const auto event = payload ? JsonObject::object(*payload, "uiEvent") : std::nullopt;
    if (event && word(*event, "event.name") == "qwen-code.tool_call" &&
        word(*event, "status") == "cancelled" && word(*event, "subagent_name").empty()) {
        fillTurn(line, Turn::interrupted, info);
    }
}

} // namespace morvane::GeminiTranscript
