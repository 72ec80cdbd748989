#include "ModelDialects.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

namespace morvane::ModelDialects {

namespace {

using nlohmann::json;

constexpr const char *words = "The command is done.";

/// The text of a message, whose content is a string or a list of parts.
std::string textOf(const json &message) {
    const json content = message.value("content", json());
    if (content.is_string()) {
        return content.get<std::string>();
    }
    std::string result;
    for (const json &part : content.is_array() ? content : json::array()) {
        result += part.value("text", std::string());
    }
    return result;
}

std::optional<std::string> commandIn(const std::string &text) {
    constexpr std::string_view request = "Run `";
    const auto begin = text.rfind(request);
    const auto end = text.find('`', begin == text.npos ? begin : begin + request.size());
    return end == text.npos
               ? std::nullopt
               : std::optional(text.substr(begin + request.size(), end - begin - request.size()));
}

/// The names of the tools that the agent offers.
std::vector<std::string> toolNames(const json &request) {
    std::vector<std::string> names;
    for (const json &tool : request.value("tools", json::array())) {
        const json several =
            tool.value("functionDeclarations", tool.value("tools", json::array({tool})));
        for (const json &one : several) {
            const json &described = one.contains("function") ? one["function"] : one;
            names.push_back(described.value("name", described.value("type", std::string())));
        }
    }
    return names;
}

/// The first of these tools that the agent offers.
std::optional<std::string> offered(const json &request,
                                   std::initializer_list<const char *> wanted) {
    const std::vector<std::string> names = toolNames(request);
    for (const char *name : wanted) {
        if (std::ranges::find(names, name) != names.end()) {
            return name;
        }
    }
    return std::nullopt;
}

/// Agents take two answers of one id for one, so each has a number: that of what was said before.
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

// --- Anthropic's messages ---

bool isToolResult(const json &part) {
    return part.value("type", "") == "tool_result";
}

std::optional<std::string> commandOfMessages(const json &request) {
    std::optional<std::string> command;
    for (const json &message : request.value("messages", json::array())) {
        // The agent's own remarks may follow what the person said.
        if (message.value("role", "") != "user") {
            continue;
        }
        const json content = message.value("content", json());
        const bool isResult = content.is_array() && std::ranges::any_of(content, isToolResult);
        command = isResult ? std::nullopt : commandIn(textOf(message));
    }
    return offered(request, {"Bash"}) ? command : std::nullopt;
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

std::optional<std::string> commandOfResponses(const json &request) {
    std::optional<std::string> command;
    for (const json &item : request.value("input", json::array())) {
        if (item.value("role", "") == "user") {
            command = commandIn(textOf(item));
        } else if (item.value("type", "").ends_with("_output")) {
            command = std::nullopt;
        }
    }
    return command;
}

json functionCall(const json &request, const std::string &tool, const json &arguments) {
    const json said = request.value("input", json::array());
    return {{"type", "function_call"},
            {"id", numbered("fc_", said)},
            {"call_id", numbered("call_", said)},
            {"name", tool},
            {"arguments", arguments.dump()}};
}

/// Each of Codex's shells takes the command in a way of its own. It is to run outside of the
/// sandbox, so that somebody is asked.
std::optional<json> shellCall(const json &request, const std::string &command) {
    const auto tool = offered(request, {"exec_command", "shell_command", "shell"});
    if (!tool) {
        return std::nullopt;
    }
    json arguments = {{"sandbox_permissions", "require_escalated"},
                      {"justification", "May the command run?"}};
    if (*tool == "exec_command") {
        arguments["cmd"] = command;
    } else if (*tool == "shell_command") {
        arguments["command"] = command;
    } else {
        arguments["command"] = {"sh", "-c", command};
    }
    return functionCall(request, *tool, arguments);
}

/// Asked to let a subagent do something, Codex is told to launch one.
std::optional<json> spawnCall(const json &request) {
    constexpr std::string_view wish = "Let a subagent ";
    const json said = request.value("input", json::array());
    const std::string asked = said.empty() ? std::string() : textOf(said.back());
    if (!asked.starts_with(wish) || !offered(request, {"spawn_agent"})) {
        return std::nullopt;
    }
    json call = functionCall(request, "spawn_agent", {{"message", asked.substr(wish.size())}});
    call["namespace"] = "multi_agent_v1";
    return call;
}

} // namespace

Answer messages(const json &request) {
    const json said = request.value("messages", json::array());
    const auto command = commandOfMessages(request);
    const char *stopReason = command ? "tool_use" : "end_turn";
    const json input = {{"command", command.value_or("")}, {"description", "Run the command"}};
    json block =
        command ? json{{"type", "tool_use"}, {"id", numbered("toolu_", said)}, {"name", "Bash"}}
                : json{{"type", "text"}};
    block[command ? "input" : "text"] = command ? json::object() : json("");
    const json delta = command ? json{{"type", "input_json_delta"}, {"partial_json", input.dump()}}
                               : json{{"type", "text_delta"}, {"text", words}};
    if (request.value("stream", false)) {
        return stream(streamedMessage(request, block, delta, stopReason));
    }
    block[command ? "input" : "text"] = command ? input : json(words);
    return {"application/json", messageOf(request, json::array({block}), stopReason).dump()};
}

Answer responses(const json &request) {
    const auto command = commandOfResponses(request);
    const json said = request.value("input", json::array());
    const std::string id = numbered("resp_", said);
    const json text = {{"type", "message"},
                       {"id", numbered("msg_", said)},
                       {"role", "assistant"},
                       {"content", {{{"type", "output_text"}, {"text", words}}}}};
    json item = command ? shellCall(request, *command).value_or(text) : text;
    if (const auto spawn = spawnCall(request)) {
        item = *spawn;
    }
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
    const auto shell = offered(request, {"bash", "run_shell_command"});
    const bool isAsked = !all.empty() && all.back().value("role", "") == "user" && shell;
    const auto command = isAsked ? commandIn(textOf(all.back())) : std::nullopt;
    const json arguments = {{"command", command.value_or("")}, {"description", "Run the command"}};
    const json call = {
        {"index", 0},
        {"id", numbered("call_", all)},
        {"type", "function"},
        {"function", {{"name", shell.value_or("")}, {"arguments", arguments.dump()}}}};
    json said = {{"role", "assistant"}};
    if (command) {
        said["tool_calls"] = json::array({call});
    } else {
        said["content"] = words;
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
    json last = part(isStream ? json::object() : said, command ? "tool_calls" : "stop");
    last["usage"] = {{"prompt_tokens", 1000}, {"completion_tokens", 10}, {"total_tokens", 1010}};
    if (!isStream) {
        return {"application/json", last.dump()};
    }
    return stream(streamed("", part(said, nullptr)) + streamed("", last) + "data: [DONE]\n\n");
}

Answer generateContent(const json &request, bool isStream) {
    const json all = request.value("contents", json::array());
    const json parts = all.empty() ? json::array() : all.back().value("parts", json::array());
    std::string asked;
    for (const json &part : parts) {
        asked += part.value("text", std::string());
    }
    const auto shell = offered(request, {"run_shell_command"});
    const auto command = shell ? commandIn(asked) : std::nullopt;
    const json arguments = {{"command", command.value_or("")}, {"description", "Run the command"}};
    const json part = command ? json{{"functionCall", {{"name", *shell}, {"args", arguments}}}}
                              : json{{"text", words}};
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
