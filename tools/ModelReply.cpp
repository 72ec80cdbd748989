#include "ModelReply.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace morvane {

namespace {

using nlohmann::json;

struct Wish {
    std::string_view verb;
    std::string object;
};

/// The last wish in the text.
Wish wishIn(std::string_view text) {
    constexpr std::array<std::string_view, 7> verbs{
        "Run `", "Run twice `", "Delegate `", "Ask `", "Fail with `", "Say `", "Use up `"};
    Wish wish;
    std::size_t latest = 0;
    for (const std::string_view verb : verbs) {
        const auto at = text.rfind(verb);
        const auto begin = at + verb.size();
        const auto end = at == text.npos ? at : text.find('`', begin);
        if (end != text.npos && begin > latest) {
            latest = begin;
            wish = {verb, std::string(text.substr(begin, end - begin))};
        }
    }
    return wish;
}

// The arguments by which a tool fulfils a wish; null for a tool that can't.

json toRun(const std::string &command, std::string_view tool) {
    if (tool == "Bash" || tool == "bash" || tool == "run_shell_command") {
        return {{"command", command}, {"description", "Run the command"}};
    }
    // Codex's shells take the command under other names. It asks to run outside of their sandbox,
    // so that the person is asked.
    if (tool == "exec_command" || tool == "shell_command") {
        return {{tool == "exec_command" ? "cmd" : "command", command},
                {"sandbox_permissions", "require_escalated"},
                {"justification", "May the command run?"}};
    }
    return nullptr;
}

json toDelegate(const std::string &command, std::string_view tool) {
    const std::string prompt = "Run `" + command + "`";
    if (tool == "spawn_agent") {
        return {{"message", prompt}};
    }
    if (tool == "invoke_agent") {
        return {{"agent_name", "generalist"}, {"prompt", prompt}};
    }
    if (tool == "Agent" || tool == "agent" || tool == "task") {
        return {{"description", "Run a command"},
                {"prompt", prompt},
                {"subagent_type", tool == "task" ? "general" : "general-purpose"}};
    }
    return nullptr;
}

json toAsk(const std::string &text, std::string_view tool) {
    const auto option = [](const char *label) {
        return json{{"label", label}, {"description", "A colour"}};
    };
    json question = {{"question", text},
                     {"header", "Colour"},
                     {"options", json::array({option("Red"), option("Blue")})}};
    if (tool == "AskUserQuestion" || tool == "ask_user_question") {
        question["multiSelect"] = false;
    } else if (tool == "ask_user") {
        question["type"] = "choice";
    } else if (tool == "request_user_input") {
        question["id"] = "colour";
    } else if (tool != "question") {
        return nullptr;
    }
    return {{"questions", json::array({question})}};
}

json argumentsFor(const Wish &wish, std::string_view tool) {
    if (wish.verb.starts_with("Run")) {
        return toRun(wish.object, tool);
    }
    if (wish.verb == "Delegate `") {
        return toDelegate(wish.object, tool);
    }
    return wish.verb == "Ask `" ? toAsk(wish.object, tool) : json();
}

} // namespace

ModelReply ModelReply::to(const std::string &asked, const std::vector<std::string> &tools) {
    const Wish wish = wishIn(asked);
    ModelReply reply;
    reply.words = "The command is done.";
    // A request without tools is an errand of the agent's own, such as a title for the session.
    if (tools.empty()) {
        return reply;
    }
    for (const std::string &tool : tools) {
        if (json arguments = argumentsFor(wish, tool); arguments.is_object()) {
            reply.tool = tool;
            reply.arguments = std::move(arguments);
            reply.callsTwice = wish.verb == "Run twice `";
            return reply;
        }
    }
    if (wish.verb == "Say `") {
        reply.words = wish.object;
    } else if (wish.verb == "Fail with `") {
        reply.failure = std::atoi(wish.object.c_str());
    } else if (wish.verb == "Use up `") {
        reply.words = wish.object + " percent are used up.";
        reply.used = std::atoi(wish.object.c_str());
    }
    return reply;
}

} // namespace morvane
