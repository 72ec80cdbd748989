#include "Core/Adapters/GeminiTranscript.h"

#include "Core/Agents/TranscriptLine.h"

#include <algorithm>

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

} // namespace

/// A line of another kind may repeat what was there before.
void takeLine(const JsonObject &line, TranscriptInfo &info) {
    if (info.turn) {
        return;
    }
    const std::string_view type = word(line.root(), "type");
    if (type == "error") {
        info.turn = Turn::failed;
        info.lastAssistantText = TranscriptReader::displayLine(line.string("content"));
    } else if (type == "info" && word(line.root(), "content") == "Request cancelled.") {
        info.turn = Turn::interrupted;
    } else if (type == "user" && isTyped(line)) {
        info.turn = Turn::running;
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
