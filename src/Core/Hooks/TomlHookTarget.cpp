#include "Core/Hooks/TomlHookTarget.h"

#include "Core/Hooks/TomlBlock.h"

#include <tuple>

namespace morvane {

TomlHookTarget::TomlHookTarget(const QString &path, HookPlan plan, ForwarderScripts scripts)
    : m_file(path), m_plan(std::move(plan)), m_scripts(std::move(scripts)) {}

std::optional<Failure> TomlHookTarget::install() const {
    if (auto failure = m_scripts.writeHookScript()) {
        return failure;
    }
    return write(true);
}

std::optional<Failure> TomlHookTarget::uninstall() const {
    return write(false);
}

/// The first connection saves the file as its owner wrote it; what changes nothing but our own
/// lines leaves that backup alone.
std::optional<Failure> TomlHookTarget::write(bool installs) const {
    return m_file.rewrite([&](const std::optional<QByteArray> &content)
                              -> Result<std::optional<AgentSettingsChange>> {
        const QByteArray text = content.value_or(QByteArray());
        const AgentSettingsChange change{
            .content = installs ? TomlBlock::install(text, m_plan) : TomlBlock::uninstall(text),
            .backsUp = !text.isEmpty() && !TomlBlock::installedTOMLBlock(text),
        };
        // A begin without an end stays: there is no telling what of the rest is ours.
        if (change.content.contains(TomlBlock::tomlBeginMarker) != installs) {
            return Failure{tr("config.toml did not contain the expected result after writing")};
        }
        return change;
    });
}

void TomlHookTarget::renew() const {
    std::ignore = m_scripts.writeHookScript();
    if (hasStaleEntries()) {
        std::ignore = install();
    }
}

bool TomlHookTarget::isInstalled() const {
    return m_file.read().value_or(QByteArray()).contains(TomlBlock::tomlBeginMarker);
}

bool TomlHookTarget::hasStaleEntries() const {
    const auto present = TomlBlock::installedTOMLBlock(m_file.read().value_or(QByteArray()));
    return !present || *present + '\n' != TomlBlock::tomlBlock(m_plan);
}

Health TomlHookTarget::health() const {
    Health health{.settingsReadable = m_file.exists()};
    if (isInstalled()) {
        health.hooksPresent = true;
        health.entriesCurrent = !hasStaleEntries();
        health.scriptExecutable = ForwarderScripts::isHookScriptExecutable();
    }
    return health;
}

} // namespace morvane
