#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Gemini CLI, and Qwen Code in releases that aren't listed: they share their hooks but not their
/// settings file.
class GeminiAdapter : public AgentAdapter {
public:
    /// The path is relative to the home folder.
    GeminiAdapter(AgentKind kind, QString settingsPath, const AgentContract &contract = {});

    AgentKind kind() const override { return m_kind; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    std::optional<QString> matcher(const QString &native) const override;
    AgentIntegration integration() const override;
    /// Only the state of the newest turn, and what has failed.
    TranscriptInfo readTranscript(const QString &path) const override;
    std::vector<HooksSwitch> hooksSwitches() const override;

private:
    AgentKind m_kind;
    QString m_settingsPath;
};

} // namespace morvane
