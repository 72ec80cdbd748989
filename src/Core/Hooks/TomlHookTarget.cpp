#include "Core/Hooks/TomlHookTarget.h"

#include "Core/Hooks/TomlBlock.h"
#include "Core/Hooks/TomlHookEntries.h"

#include <tuple>

namespace morvane {

namespace {

/// The first connection saves the file as its owner wrote it; a change of nothing but our own lines
/// leaves that backup alone.
bool needsBackup(const QByteArray &text) {
    return !text.isEmpty() && !TomlBlock::installedTOMLBlock(text);
}

} // namespace

TomlHookTarget::TomlHookTarget(AgentSettingsFile file, HookPlan plan, ForwarderScripts scripts)
    : m_file(std::move(file)), m_plan(plan), m_scripts(std::move(scripts)) {}

/// What was read or, where that isn't whole, what the file holds a moment later.
std::optional<QByteArray> TomlHookTarget::settled(std::optional<QByteArray> content) const {
    const bool isWhole = !content || (!content->isEmpty() && TomlHookEntries::find(*content));
    auto later = isWhole ? std::nullopt : m_file.readAgain();
    return later ? later : content;
}

QByteArray TomlHookTarget::text() const {
    return settled(m_file.read()).value_or(QByteArray());
}

Result<void> TomlHookTarget::install() const {
    if (const auto written = m_scripts.writeHookScript(); !written) {
        return written;
    }
    return m_file.rewrite([&](const auto &content) -> Result<std::optional<AgentSettingsChange>> {
        using enum AgentSettingsChange::Origin;
        const QByteArray text = settled(content).value_or(QByteArray());
        const auto installed = TomlBlock::install(text, m_plan);
        if (!installed) {
            return installed.error();
        }
        if (*installed == text) {
            return std::nullopt;
        }
        return AgentSettingsChange{
            .content = *installed,
            .backsUp = needsBackup(text),
            .origin = TomlBlock::isInstalled(text) ? stays : taken,
        };
    });
}

/// A file of nothing but our block is left empty, unless we have made it.
Result<void> TomlHookTarget::uninstall() const {
    return m_file.rewrite([&](const auto &content) -> Result<std::optional<AgentSettingsChange>> {
        const QByteArray text = settled(content).value_or(QByteArray());
        const QByteArray left = TomlBlock::uninstall(text);
        // Without an end marker nobody can tell which of the lines below are ours.
        if (left.contains(TomlBlock::tomlBeginMarker)) {
            return Failure{tr("config.toml did not contain the expected result after writing")};
        }
        AgentSettingsChange change{
            .content = left,
            .backsUp = needsBackup(text),
        };
        const auto origin = m_file.origin();
        if (content && origin && isOrigin(*origin, left)) {
            change.content = origin->bytes;
            change.origin = AgentSettingsChange::Origin::returned;
        }
        return change;
    });
}

/// Whether `left`, a text without ours, is what an install and an uninstall make of the origin.
bool TomlHookTarget::isOrigin(const SettingsOrigin::Content &origin, const QByteArray &left) const {
    const auto ours = TomlBlock::install(origin.bytes.value_or(QByteArray()), m_plan);
    return ours && TomlBlock::uninstall(*ours) == left;
}

void TomlHookTarget::renew() const {
    std::ignore = m_scripts.writeHookScript();
    if (hasStaleEntries()) {
        std::ignore = install();
    }
}

bool TomlHookTarget::isInstalled() const {
    return TomlBlock::isInstalled(text());
}

bool TomlHookTarget::hasStaleEntries() const {
    return TomlBlock::isStale(text(), m_plan);
}

Health TomlHookTarget::health() const {
    Health health{.settingsReadable = m_file.exists()};
    const QByteArray present = text();
    if (TomlBlock::isInstalled(present)) {
        health.hooksPresent = true;
        health.entriesCurrent = !TomlBlock::isStale(present, m_plan);
        health.scriptExecutable = ForwarderScripts::isHookScriptExecutable();
    }
    return health;
}

} // namespace morvane
