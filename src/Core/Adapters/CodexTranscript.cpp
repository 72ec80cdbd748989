#include "Core/Adapters/CodexTranscript.h"

#include "Core/Agents/TranscriptLine.h"

namespace morvane::CodexTranscript {

namespace {

using namespace TranscriptLine;
using simdjson::dom::object;

/// Codex marks what it says on the way to its answer with a phase of its own. The answer has none,
/// or one whose name depends on the model.
bool isOnTheWay(object message) {
    std::string_view phase;
    return message["phase"].get(phase) == simdjson::SUCCESS && phase != "final" &&
           phase != "final_answer";
}

void takeCodexMessage(object message, bool ofAnyPhase, TranscriptInfo &info) {
    const std::string_view role = word(message, "role");
    const bool mayBeLast = ofAnyPhase || !isOnTheWay(message);
    if (role == "assistant" && !info.lastAssistantText && mayBeLast) {
        info.lastAssistantText = lastText(contentOf(message));
    } else if (role == "user" && !info.title) {
        info.title = firstText(contentOf(message));
    }
}

std::optional<int> lastInputTokens(object tokenCount) {
    const auto counts = JsonObject::object(tokenCount, "info");
    const auto usage = counts ? JsonObject::object(*counts, "last_token_usage") : std::nullopt;
    return usage ? positive(integer(*usage, "input_tokens").value_or(0)) : std::nullopt;
}

/// The first two events have another name in some releases. A failed turn also counts as complete
/// for Codex.
std::optional<TranscriptInfo::Turn> turnAfter(object payload) {
    using Turn = TranscriptInfo::Turn;
    const std::string_view event = word(payload, "type");
    if (event == "task_started" || event == "turn_started") {
        return Turn::running;
    }
    if (event == "task_complete" || event == "turn_complete") {
        return JsonObject::object(payload, "error") ? Turn::failed : Turn::ended;
    }
    if (event == "turn_aborted") {
        return Turn::interrupted;
    }
    return event == "error" ? std::optional(Turn::failed) : std::nullopt;
}

/// The message of a failure, or the one inside it where Codex passes on a service's JSON.
std::optional<QString> failureOf(object payload) {
    const auto error = JsonObject::object(payload, "error");
    const auto message = JsonObject::string(error.value_or(payload), "message");
    if (auto words = TranscriptReader::displayLine(message)) {
        return words;
    }
    const auto refusal = JsonObject::parse(message.value_or(QString()).toUtf8());
    const auto reason = refusal ? JsonObject::object(refusal->root(), "error") : std::nullopt;
    return reason ? TranscriptReader::displayLine(JsonObject::string(*reason, "message"))
                  : std::nullopt;
}

void take(const JsonObject &line, bool ofAnyPhase, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    const auto payload = JsonObject::object(line.root(), "payload");
    if (!payload) {
        return;
    }
    const std::string_view kind = word(*payload, "type");
    if (type == "turn_context") {
        fill(info.model, JsonObject::string(*payload, "model"));
        fill(info.permissionMode, JsonObject::string(*payload, "approval_policy"));
    } else if (type == "event_msg" && kind == "token_count") {
        fill(info.contextTokens, lastInputTokens(*payload));
    } else if (type == "event_msg") {
        const bool isNewest = !info.turn;
        fillTurn(line, turnAfter(*payload), info);
        if (isNewest && info.turn == TranscriptInfo::Turn::failed) {
            info.failure = failureOf(*payload);
        }
    } else if (type == "response_item" && kind == "message") {
        takeCodexMessage(*payload, ofAnyPhase, info);
    }
}

} // namespace

void takeLine(const JsonObject &line, TranscriptInfo &info) {
    take(line, false, info);
}

void takeLineOfAnyPhase(const JsonObject &line, TranscriptInfo &info) {
    take(line, true, info);
}

std::optional<TranscriptOrigin> findOrigin(const JsonObject &line) {
    const auto payload = JsonObject::object(line.root(), "payload");
    if (line.string("type") != QLatin1String("session_meta") || !payload) {
        return std::nullopt;
    }
    const auto session = JsonObject::string(*payload, "session_id");
    auto id = JsonObject::string(*payload, "id");
    if (!id) {
        id = session;
    }
    const auto cwd = JsonObject::string(*payload, "cwd");
    if (!id || id->isEmpty() || !cwd) {
        return std::nullopt;
    }
    const auto version = JsonObject::string(*payload, "cli_version");
    return TranscriptOrigin{*id, *cwd, session.value_or(QString()),
                            version ? AgentRelease::parse(*version) : std::nullopt};
}

} // namespace morvane::CodexTranscript
