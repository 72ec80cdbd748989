#include "ModelDialects.h"

#include "ModelReply.h"

#include <ctime>
#include <string_view>
#include <vector>

namespace morvane::ModelDialects {

namespace {

using nlohmann::json;

/// The text of a message, whose content is a string or a list of parts.
std::string textOf(const json &message) {
    const json content = message.value("content", message.value("parts", json()));
    if (content.is_string()) {
        return content.get<std::string>();
    }
    std::string result;
    for (const json &part : content.is_array() ? content : json::array()) {
        result += part.value("text", std::string());
    }
    return result;
}

/// The names of the tools that the agent offers.
std::vector<std::string> toolNames(const json &request) {
    std::vector<std::string> names;
    for (const json &tool : request.value("tools", json::array())) {
        const json several =
            tool.value("functionDeclarations", tool.value("tools", json::array({tool})));
        for (const json &one : several) {
            const json &described = one.contains("function") ? one["function"] : one;
            names.push_back(described.value("name", std::string()));
        }
    }
    return names;
}

/// Agents take two answers with one id for the same, so each is numbered by the conversation's
/// length.
std::string numbered(const char *prefix, const json &conversation) {
    return prefix + std::to_string(conversation.size());
}

/// `event` is left out where it is empty.
std::string streamed(std::string_view event, const json &data) {
    std::string result;
    if (!event.empty()) {
        result.append("event: ").append(event).append("\n");
    }
    return result + "data: " + data.dump() + "\n\n";
}

Answer stream(std::string body) {
    return {"text/event-stream", std::move(body)};
}

/// An error that has the fields of every dialect.
Answer refusal(int status) {
    const json error = {{"type", "invalid_request_error"},
                        {"message", "The model refuses."},
                        {"code", status},
                        {"status", "INVALID_ARGUMENT"}};
    return {"application/json", json{{"type", "error"}, {"error", error}}.dump(), status};
}

// --- Anthropic's messages ---

std::string askedInMessages(const json &messages) {
    std::string asked;
    for (const json &message : messages) {
        // The agent's own remarks may follow what the person said.
        if (message.value("role", "") != "user") {
            continue;
        }
        asked = textOf(message);
        // The result of an interrupted tool comes together with what the person says next.
        const json content = message.value("content", json());
        for (const json &part : content.is_array() ? content : json::array()) {
            const bool isResult = part.value("type", "") == "tool_result";
            asked = isResult ? std::string() : asked + part.value("text", std::string());
        }
    }
    return asked;
}

/// Headers that report this much of the session's limit as used, and half as much of the week's.
std::string limits(int percent) {
    const std::string name = "anthropic-ratelimit-unified-";
    const auto limit = [&name](const char *window, double used, int hours) {
        const std::time_t reset = std::time(nullptr) + std::time_t(hours) * 3600;
        return name + window + "-utilization: " + std::to_string(used) + "\r\n" + name + window +
               "-reset: " + std::to_string(reset) + "\r\n";
    };
    return percent == 0 ? std::string()
                        : name + "status: allowed\r\n" + limit("5h", percent / 100.0, 3) +
                              limit("7d", percent / 200.0, 50);
}

json messageOf(const json &request, const json &content, const char *stopReason) {
    return {{"id", numbered("msg_", request.value("messages", json::array()))},
            {"type", "message"},
            {"role", "assistant"},
            {"model", request.value("model", "model")},
            {"content", content},
            {"stop_reason", stopReason ? json(stopReason) : json()},
            {"stop_sequence", nullptr},
            {"usage", {{"input_tokens", 1000}, {"output_tokens", 10}}}};
}

std::string streamedMessage(const json &request, const json &block, const json &delta,
                            const char *stopReason) {
    const auto event = [](const char *type, json data) {
        data["type"] = type;
        return streamed(type, data);
    };
    return event("message_start", {{"message", messageOf(request, json::array(), nullptr)}}) +
           event("content_block_start", {{"index", 0}, {"content_block", block}}) +
           event("content_block_delta", {{"index", 0}, {"delta", delta}}) +
           event("content_block_stop", {{"index", 0}}) +
           event("message_delta",
                 {{"delta", {{"stop_reason", stopReason}}}, {"usage", {{"output_tokens", 10}}}}) +
           event("message_stop", json::object());
}

// --- OpenAI's responses ---

std::string askedInResponses(const json &said) {
    std::string asked;
    for (const json &item : said) {
        if (item.value("role", "") == "user") {
            asked = textOf(item);
        } else if (item.value("type", "").ends_with("_output")) {
            asked.clear();
        }
    }
    return asked;
}

json itemOf(const ModelReply &reply, const json &said) {
    if (reply.tool.empty()) {
        return {{"type", "message"},
                {"id", numbered("msg_", said)},
                {"role", "assistant"},
                {"content", {{{"type", "output_text"}, {"text", reply.words}}}}};
    }
    json call = {{"type", "function_call"},
                 {"id", numbered("fc_", said)},
                 {"call_id", numbered("call_", said)},
                 {"name", reply.tool},
                 {"arguments", reply.arguments.dump()}};
    if (reply.tool == "spawn_agent") {
        call["namespace"] = "multi_agent_v1";
    }
    return call;
}

} // namespace

Answer messages(const json &request) {
    const json said = request.value("messages", json::array());
    const auto reply = ModelReply::to(askedInMessages(said), toolNames(request));
    if (reply.failure != 0) {
        return refusal(reply.failure);
    }
    const bool isCall = !reply.tool.empty();
    const char *stopReason = isCall ? "tool_use" : "end_turn";
    json block =
        isCall ? json{{"type", "tool_use"}, {"id", numbered("toolu_", said)}, {"name", reply.tool}}
               : json{{"type", "text"}};
    Answer answer{"application/json", {}, 200, limits(reply.used)};
    if (request.value("stream", false)) {
        block[isCall ? "input" : "text"] = isCall ? json::object() : json("");
        const json delta =
            isCall ? json{{"type", "input_json_delta"}, {"partial_json", reply.arguments.dump()}}
                   : json{{"type", "text_delta"}, {"text", reply.words}};
        answer.contentType = "text/event-stream";
        answer.body = streamedMessage(request, block, delta, stopReason);
        return answer;
    }
    block[isCall ? "input" : "text"] = isCall ? reply.arguments : json(reply.words);
    answer.body = messageOf(request, json::array({block}), stopReason).dump();
    return answer;
}

Answer responses(const json &request) {
    const json said = request.value("input", json::array());
    const auto reply = ModelReply::to(askedInResponses(said), toolNames(request));
    if (reply.failure != 0) {
        return refusal(reply.failure);
    }
    const std::string id = numbered("resp_", said);
    const json item = itemOf(reply, said);
    const json usage = {{"input_tokens", 1000},
                        {"input_tokens_details", {{"cached_tokens", 0}}},
                        {"output_tokens", 10},
                        {"output_tokens_details", {{"reasoning_tokens", 0}}},
                        {"total_tokens", 1010}};
    const auto event = [](const char *type, json data) {
        data["type"] = type;
        return streamed(type, data);
    };
    return stream(
        event("response.created", {{"response", {{"id", id}}}}) +
        event("response.output_item.added", {{"output_index", 0}, {"item", item}}) +
        event("response.output_item.done", {{"output_index", 0}, {"item", item}}) +
        event("response.completed",
              {{"response", {{"id", id}, {"output", json::array({item})}, {"usage", usage}}}}));
}

Answer chatCompletions(const json &request) {
    const json all = request.value("messages", json::array());
    const bool isAsked = !all.empty() && all.back().value("role", "") == "user";
    const auto reply =
        ModelReply::to(isAsked ? textOf(all.back()) : std::string(), toolNames(request));
    if (reply.failure != 0) {
        return refusal(reply.failure);
    }
    const bool isCall = !reply.tool.empty();
    json said = {{"role", "assistant"}};
    if (isCall) {
        json call = {{"index", 0},
                     {"id", numbered("call_", all)},
                     {"type", "function"},
                     {"function", {{"name", reply.tool}, {"arguments", reply.arguments.dump()}}}};
        said["tool_calls"] = json::array({call});
        if (reply.callsTwice) {
            call["index"] = 1;
            call["id"] = numbered("call_again_", all);
            said["tool_calls"].push_back(call);
        }
    } else {
        said["content"] = reply.words;
    }
    const bool isStream = request.value("stream", false);
    const auto part = [&](const json &message, const json &finish) {
        return json{{"id", numbered("chatcmpl_", all)},
                    {"object", isStream ? "chat.completion.chunk" : "chat.completion"},
                    {"created", 1},
                    {"model", request.value("model", "model")},
                    {"choices",
                     {{{"index", 0},
                       {isStream ? "delta" : "message", message},
                       {"finish_reason", finish}}}}};
    };
    json last = part(isStream ? json::object() : said, isCall ? "tool_calls" : "stop");
    last["usage"] = {{"prompt_tokens", 1000}, {"completion_tokens", 10}, {"total_tokens", 1010}};
    if (!isStream) {
        return {"application/json", last.dump()};
    }
    return stream(streamed("", part(said, nullptr)) + streamed("", last) + "data: [DONE]\n\n");
}

Answer generateContent(const json &request, bool isStream) {
    const json all = request.value("contents", json::array());
    const auto reply =
        ModelReply::to(all.empty() ? std::string() : textOf(all.back()), toolNames(request));
    if (reply.failure != 0) {
        return refusal(reply.failure);
    }
    const json part =
        reply.tool.empty()
            ? json{{"text", reply.words}}
            : json{{"functionCall", {{"name", reply.tool}, {"args", reply.arguments}}}};
    const json answer = {
        {"candidates",
         {{{"content", {{"role", "model"}, {"parts", {part}}}},
           {"finishReason", "STOP"},
           {"index", 0}}}},
        {"usageMetadata",
         {{"promptTokenCount", 1000}, {"candidatesTokenCount", 10}, {"totalTokenCount", 1010}}},
        {"modelVersion", "model"}};
    return isStream ? stream(streamed("", answer)) : Answer{"application/json", answer.dump()};
}

} // namespace morvane::ModelDialects
