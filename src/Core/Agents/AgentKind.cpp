#include "Core/Agents/AgentKind.h"

#include <algorithm>

namespace morvane {

namespace {

struct Names {
    AgentKind kind;
    std::string_view rawValue;
    const char *displayName;
};

constexpr std::array names{
    Names{AgentKind::claude, "claude", "Claude Code"},
    Names{AgentKind::codex, "codex", "Codex"},
    Names{AgentKind::gemini, "gemini", "Gemini CLI"},
    Names{AgentKind::opencode, "opencode", "OpenCode"},
    Names{AgentKind::cursor, "cursor", "Cursor"},
    Names{AgentKind::kimi, "kimi", "Kimi CLI"},
    Names{AgentKind::qwen, "qwen", "Qwen Code"},
    Names{AgentKind::qoder, "qoder", "Qoder"},
    Names{AgentKind::factory, "factory", "Factory"},
    Names{AgentKind::codebuddy, "codebuddy", "CodeBuddy"},
};
static_assert(names.size() == allAgentKinds.size());

const Names &namesOf(AgentKind kind) {
    return *std::ranges::find(names, kind, &Names::kind);
}

} // namespace

std::string_view rawValue(AgentKind kind) {
    return namesOf(kind).rawValue;
}

std::optional<AgentKind> agentKind(std::string_view rawValue) {
    for (const Names &entry : names) {
        if (entry.rawValue == rawValue) {
            return entry.kind;
        }
    }
    return std::nullopt;
}

QString displayName(AgentKind kind) {
    return QString::fromUtf8(namesOf(kind).displayName);
}

} // namespace morvane
