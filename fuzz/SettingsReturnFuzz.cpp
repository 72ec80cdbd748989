#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/TomlHookEntries.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Support/TemporaryHome.h"

#include <cstdint>
#include <cstdlib>

// An agent's settings file must be the same to the last byte after installing and uninstalling,
// whatever it holds, and a TOML file must keep its meaning in between. Quick if the folder for
// temporary files is in memory.

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    static const TemporaryHome home;
    static Defaults defaults(home.path("config"), "fuzz");
    static const MorvaneSettings settings(defaults);
    constexpr AgentKind kinds[] = {AgentKind::claude, AgentKind::cursor, AgentKind::kimi};
    if (size == 0) {
        return 0;
    }
    const AgentAdapter &adapter = AgentRegistry::adapter(kinds[data[0] % std::size(kinds)]);
    const QString place = adapter.integrationDescription().mid(2);
    const QByteArray text(reinterpret_cast<const char *>(data + 1),
                          static_cast<qsizetype>(size - 1));
    QDir(QFileInfo(home.path(place)).path()).removeRecursively();
    home.write(place, text);
    const auto installer = HookInstaller::make(adapter, settings, 40123, [] {});
    if (installer->isInstalled()) {
        return 0;
    }
    if (!installer->install()) {
        require(adapter.kind() == AgentKind::kimi && home.read(place) == text);
        return 0;
    }
    require(installer->isInstalled() && installer->health().issues().isEmpty());
    if (adapter.kind() == AgentKind::kimi) {
        const auto before = TomlHookEntries::find(text);
        const auto after = TomlHookEntries::find(home.read(place));
        require(before && after);
        require(before->othersMeaning == after->othersMeaning);
    }
    require(installer->uninstall() && home.read(place) == text);
    return 0;
}
