#include "Core/Adapters/AgentReleases.h"

#include <array>

namespace morvane::AgentReleases {

std::span<const Listed> all() {
    static const std::array releases{
        // Tried: 2.1.197, 2.1.331, 2.1.332.
        Listed{AgentKind::claude,
               {2, 1, 197},
               {.remembering = AgentContract::Remembering::ruleUpdate,
                .subagentsAsk = true,
                .planTool = QLatin1String("ExitPlanMode"),
                .tellsWhoElseAsks = true,
                .announcesWhileAsking = true,
                .tellsLastWords = true,
                .interruptsByHangUp = true,
                .endsTurnsInTranscript = true}},
        // Tried: 0.169.0, 0.171.0.
        Listed{AgentKind::codex,
               {0, 169, 0},
               {.waitsAtSessionEnd = true,
                .reviewsHooks = true,
                .everyPhaseCounts = true,
                .spawningTool = QLatin1String("spawn_agent"),
                .subagentsAsk = true,
                .asksAfterHook = true,
                .announcesWhileAsking = true,
                .tellsLastWords = true,
                .tellsInterruptions = true,
                .endsTurnsInTranscript = true,
                .hooksRunInServer = true,
                .titlesLag = true}},
        // Tried: 0.61.0.
        Listed{AgentKind::gemini,
               {0, 61, 0},
               {.hookTimeUnit = AgentContract::TimeUnit::milliseconds,
                .hasAsyncHooks = false,
                .tellsLastWords = true,
                .endsTurnsInTranscript = true}},
        // Tried: 0.24.4. Its events are Claude Code's, so it has an adapter of another kind too.
        Listed{AgentKind::qwen,
               {0, 24, 4},
               {.hasPromptsOfItsOwn = true,
                .asksAfterHook = true,
                .tellsLastWords = true,
                .interruptsByHangUp = true,
                .endsTurnsInTranscript = true}},
        // Tried: 2.117.0, without a terminal.
        Listed{AgentKind::codebuddy, {2, 117, 0}, {.tellsLastWords = true}},
        // Tried: 0.225.2.
        Listed{AgentKind::factory,
               {0, 225, 2},
               {.tellsWhoElseAsks = true, .endsTurnsInTranscript = true}},
    };
    return releases;
}

std::optional<Program> program(AgentKind agent) {
    switch (agent) {
    case AgentKind::claude:
        return Program{QStringLiteral("claude"), QStringLiteral("@anthropic-ai/claude-code")};
    case AgentKind::codex:
        return Program{QStringLiteral("codex"), QStringLiteral("@openai/codex")};
    case AgentKind::gemini:
        return Program{QStringLiteral("gemini"), QStringLiteral("@google/gemini-cli")};
    case AgentKind::qwen:
        return Program{QStringLiteral("qwen"), QStringLiteral("@qwen-code/qwen-code")};
    case AgentKind::codebuddy:
        return Program{QStringLiteral("codebuddy"), QStringLiteral("@tencent-ai/codebuddy-code")};
    case AgentKind::factory:
        return Program{QStringLiteral("droid"), QStringLiteral("@factory/cli")};
    case AgentKind::opencode:
    case AgentKind::cursor:
    case AgentKind::kimi:
    case AgentKind::qoder:
        break;
    }
    return std::nullopt;
}

} // namespace morvane::AgentReleases
