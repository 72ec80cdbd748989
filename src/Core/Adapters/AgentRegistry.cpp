#include "Core/Adapters/AgentRegistry.h"

#include "Core/Adapters/ClaudeAdapter.h"
#include "Core/Adapters/ClaudeForkAdapter.h"
#include "Core/Adapters/CodexAdapter.h"
#include "Core/Adapters/CursorAdapter.h"
#include "Core/Adapters/GeminiAdapter.h"
#include "Core/Adapters/KimiAdapter.h"
#include "Core/Adapters/OpenCodeAdapter.h"

#include <algorithm>

namespace morvane::AgentRegistry {

std::span<const AgentAdapter *const> all() {
    static const ClaudeAdapter claude;
    static const CodexAdapter codex;
    static const GeminiAdapter gemini(AgentKind::gemini, QStringLiteral(".gemini/settings.json"));
    static const OpenCodeAdapter openCode;
    static const CursorAdapter cursor;
    static const KimiAdapter kimi;
    static const GeminiAdapter qwen(AgentKind::qwen, QStringLiteral(".qwen/settings.json"));
    static const ClaudeForkAdapter qoder(AgentKind::qoder, QStringLiteral(".qoder/settings.json"),
                                         ClaudeForkAdapter::extendedEvents(),
                                         {QStringLiteral("PermissionRequest")});
    static const ClaudeForkAdapter codeBuddy(AgentKind::codebuddy,
                                             QStringLiteral(".codebuddy/settings.json"),
                                             ClaudeForkAdapter::extendedEvents(), {});
    static const ClaudeForkAdapter factory(AgentKind::factory,
                                           QStringLiteral(".factory/settings.json"),
                                           ClaudeForkAdapter::baseEvents(), {});
    static const std::array<const AgentAdapter *, allAgentKinds.size()> adapters{
        &claude, &codex, &gemini, &openCode, &cursor, &kimi, &qwen, &qoder, &codeBuddy, &factory};
    return adapters;
}

const AgentAdapter &adapter(AgentKind kind) {
    return **std::ranges::find(all(), kind,
                               [](const AgentAdapter *entry) { return entry->kind(); });
}

std::vector<const AgentAdapter *> present() {
    std::vector<const AgentAdapter *> result;
    std::ranges::copy_if(all(), std::back_inserter(result), &AgentAdapter::isPresent);
    return result;
}

} // namespace morvane::AgentRegistry
