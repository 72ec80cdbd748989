#include "Core/Adapters/ClaudeTranscript.h"

#include "Core/Agents/TranscriptLine.h"

#include <algorithm>

namespace morvane::ClaudeTranscript {

namespace {

using namespace TranscriptLine;
using simdjson::dom::object;

std::optional<int> contextTokens(object usage) {
    std::int64_t sum = 0;
    for (const char *key :
         {"input_tokens", "cache_read_input_tokens", "cache_creation_input_tokens"}) {
        sum += integer(usage, key).value_or(0);
    }
    return positive(sum);
}

void takeClaudeMessage(object message, TranscriptInfo &info) {
    // A message that the agent writes in its model's place names no real model.
    if (auto model = JsonObject::string(message, "model"); model && !model->startsWith(u'<')) {
        fill(info.model, std::optional(model->remove(QLatin1String("claude-"))));
    }
    if (const auto usage = JsonObject::object(message, "usage")) {
        fill(info.contextTokens, contextTokens(*usage));
    }
    if (!info.lastAssistantText) {
        std::vector<object> blocks = contentOf(message);
        std::erase_if(blocks, [](object block) { return word(block, "type") != "text"; });
        info.lastAssistantText = lastText(blocks);
    }
}

/// The agent records an interruption as a person's message, in a form that nobody types.
bool isInterruption(object message) {
    std::vector<object> blocks = contentOf(message);
    return std::ranges::any_of(blocks, [](object block) {
        return word(block, "text").starts_with("[Request interrupted by user");
    });
}

std::optional<TranscriptInfo::Turn> turnAfter(const JsonObject &line) {
    using Turn = TranscriptInfo::Turn;
    const std::string_view type = word(line.root(), "type");
    const auto message = JsonObject::object(line.root(), "message");
    if (!message || (type != "user" && type != "assistant")) {
        return std::nullopt;
    }
    return type == "user" && isInterruption(*message) ? Turn::interrupted : Turn::running;
}

} // namespace

void takeLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    if (type == "permission-mode") {
        fill(info.permissionMode, line.string("permissionMode"));
    } else if (type == "ai-title") {
        fill(info.title, TranscriptReader::displayLine(line.string("aiTitle")));
    } else if (type == "assistant") {
        if (const auto message = JsonObject::object(line.root(), "message")) {
            takeClaudeMessage(*message, info);
        }
    }
}

void takeLineWithTurns(const JsonObject &line, TranscriptInfo &info) {
    fillTurn(line, turnAfter(line), info);
    takeLine(line, info);
}

std::optional<TranscriptOrigin> findOrigin(const JsonObject &line) {
    const auto cwd = line.string("cwd");
    return cwd && !cwd->isEmpty() ? std::optional(TranscriptOrigin{{}, *cwd}) : std::nullopt;
}

} // namespace morvane::ClaudeTranscript
