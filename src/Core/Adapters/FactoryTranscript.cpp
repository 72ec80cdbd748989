#include "Core/Adapters/FactoryTranscript.h"

#include "Core/Adapters/ClaudeTranscript.h"
#include "Core/Agents/TranscriptLine.h"

#include <algorithm>

namespace morvane::FactoryTranscript {

namespace {

using namespace TranscriptLine;
using simdjson::dom::object;
using Turn = TranscriptInfo::Turn;

Turn turnAfter(std::string_view reason) {
    if (reason == "cancelled") {
        return Turn::interrupted;
    }
    return reason == "error" || reason.starts_with("model_") ? Turn::failed : Turn::ended;
}

/// False for tool results, which are recorded as the person's messages too.
bool isTyped(object message) {
    return std::ranges::any_of(contentOf(message),
                               [](object block) { return !word(block, "text").empty(); });
}

/// A failure is recorded as a message that is hidden from the model. A turn that was broken off may
/// have no words; an empty text then keeps out those from before its prompt.
void takeMessage(object message, TranscriptInfo &info) {
    if (word(message, "role") == "assistant") {
        fill(info.lastAssistantText, lastText(contentOf(message)));
    } else if (word(message, "visibility") == "user_only") {
        if (info.turn == Turn::failed && !info.lastAssistantText) {
            fill(info.failure, lastText(contentOf(message)));
        }
    } else if (isTyped(message)) {
        fill(info.lastAssistantText, std::optional(QString()));
    }
}

void takeLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    const auto message = JsonObject::object(line.root(), "message");
    if (type == "agent_turn_outcome") {
        fillTurn(line, turnAfter(word(line.root(), "reason")), info);
    } else if (type == "message" && message) {
        fillTurn(line, Turn::running, info);
        fill(info.turnAt, timeOf(line)); // an outcome has no time
        takeMessage(*message, info);
    } else {
        ClaudeTranscript::takeLine(line, info);
    }
}

} // namespace

TranscriptInfo read(const QString &path) {
    TranscriptInfo info = TranscriptReader::readTail(path, takeLine);
    if (info.lastAssistantText && info.lastAssistantText->isEmpty()) {
        info.lastAssistantText.reset();
    }
    return info;
}

} // namespace morvane::FactoryTranscript
