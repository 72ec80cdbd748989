#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace morvane {

/// The command-line coding agents that Morvane knows.
enum class AgentKind {
    claude,
    codex,
    gemini,
    opencode,
    cursor,
    kimi,
    qwen,
    qoder,
    factory,
    codebuddy,
};

inline constexpr std::array allAgentKinds{
    AgentKind::claude,  AgentKind::codex,     AgentKind::gemini, AgentKind::opencode,
    AgentKind::cursor,  AgentKind::kimi,      AgentKind::qwen,   AgentKind::qoder,
    AgentKind::factory, AgentKind::codebuddy,
};

/// The agent where none is named.
inline constexpr AgentKind defaultAgentKind = AgentKind::claude;

/// The agent's name in hook commands, in requests and in everything stored.
std::string_view rawValue(AgentKind kind);

/// The agent with exactly this raw value, or none.
std::optional<AgentKind> agentKind(std::string_view rawValue);

/// The agent's own name, for a person.
QString displayName(AgentKind kind);

} // namespace morvane
