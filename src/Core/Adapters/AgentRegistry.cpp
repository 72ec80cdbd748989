#include "Core/Adapters/AgentRegistry.h"

#include "Core/Adapters/AgentReleases.h"
#include "Core/Adapters/ClaudeAdapter.h"
#include "Core/Adapters/ClaudeForkAdapter.h"
#include "Core/Adapters/CodexAdapter.h"
#include "Core/Adapters/CursorAdapter.h"
#include "Core/Adapters/GeminiAdapter.h"
#include "Core/Adapters/KimiAdapter.h"
#include "Core/Adapters/OpenCodeAdapter.h"

#include <algorithm>
#include <memory>

namespace morvane::AgentRegistry {

namespace {

using AgentReleases::Listed;

constexpr QLatin1String geminiSettings(".gemini/settings.json");
constexpr QLatin1String qwenSettings(".qwen/settings.json");
constexpr QLatin1String codeBuddySettings(".codebuddy/settings.json");
constexpr QLatin1String factorySettings(".factory/settings.json");

std::unique_ptr<const AgentAdapter> adapterOf(const Listed &listed) {
    switch (listed.agent) {
    case AgentKind::claude:
        return std::make_unique<ClaudeAdapter>(listed.contract);
    case AgentKind::codex:
        return std::make_unique<CodexAdapter>(listed.contract);
    case AgentKind::gemini:
        return std::make_unique<GeminiAdapter>(AgentKind::gemini, geminiSettings, listed.contract);
    case AgentKind::qwen:
        return std::make_unique<ClaudeForkAdapter>(
            AgentKind::qwen, qwenSettings, ClaudeForkAdapter::extendedEvents(),
            QStringList{QStringLiteral("PermissionRequest")}, listed.contract);
    case AgentKind::codebuddy:
        return std::make_unique<ClaudeForkAdapter>(AgentKind::codebuddy, codeBuddySettings,
                                                   ClaudeForkAdapter::extendedEvents(),
                                                   QStringList(), listed.contract);
    case AgentKind::factory:
        return std::make_unique<ClaudeForkAdapter>(AgentKind::factory, factorySettings,
                                                   ClaudeForkAdapter::baseEvents(), QStringList(),
                                                   listed.contract);
    case AgentKind::opencode:
    case AgentKind::cursor:
    case AgentKind::kimi:
    case AgentKind::qoder:
        break;
    }
    return nullptr;
}

/// In the order of `AgentReleases::all`.
const std::vector<std::unique_ptr<const AgentAdapter>> &listedAdapters() {
    static const auto adapters = [] {
        std::vector<std::unique_ptr<const AgentAdapter>> result;
        std::ranges::transform(AgentReleases::all(), std::back_inserter(result), adapterOf);
        return result;
    }();
    return adapters;
}

} // namespace

std::span<const AgentAdapter *const> all() {
    static const ClaudeAdapter claude;
    static const CodexAdapter codex;
    static const GeminiAdapter gemini(AgentKind::gemini, geminiSettings);
    static const OpenCodeAdapter openCode;
    static const CursorAdapter cursor;
    static const KimiAdapter kimi;
    static const GeminiAdapter qwen(AgentKind::qwen, qwenSettings);
    static const ClaudeForkAdapter qoder(AgentKind::qoder, QStringLiteral(".qoder/settings.json"),
                                         ClaudeForkAdapter::extendedEvents(),
                                         {QStringLiteral("PermissionRequest")});
    static const ClaudeForkAdapter codeBuddy(AgentKind::codebuddy, codeBuddySettings,
                                             ClaudeForkAdapter::extendedEvents(), {});
    static const ClaudeForkAdapter factory(AgentKind::factory, factorySettings,
                                           ClaudeForkAdapter::baseEvents(), {});
    static const std::array<const AgentAdapter *, allAgentKinds.size()> adapters{
        &claude, &codex, &gemini, &openCode, &cursor, &kimi, &qwen, &qoder, &codeBuddy, &factory};
    return adapters;
}

const AgentAdapter &adapter(AgentKind kind) {
    return **std::ranges::find(all(), kind,
                               [](const AgentAdapter *entry) { return entry->kind(); });
}

const AgentAdapter &adapter(AgentKind kind, std::optional<AgentRelease> release) {
    const auto releases = AgentReleases::all();
    const auto found = std::ranges::find_if(releases, [&](const Listed &listed) {
        return release && listed.agent == kind && !(*release < listed.from) &&
               release->major == listed.from.major;
    });
    return found == releases.end()
               ? adapter(kind)
               : *listedAdapters()[static_cast<std::size_t>(found - releases.begin())];
}

std::vector<const AgentAdapter *> forms(AgentKind kind) {
    std::vector<const AgentAdapter *> result{&adapter(kind)};
    for (const auto &listed : listedAdapters()) {
        if (listed->kind() == kind) {
            result.push_back(listed.get());
        }
    }
    return result;
}

std::vector<const AgentAdapter *> present() {
    std::vector<const AgentAdapter *> result;
    std::ranges::copy_if(all(), std::back_inserter(result), &AgentAdapter::isPresent);
    return result;
}

} // namespace morvane::AgentRegistry
