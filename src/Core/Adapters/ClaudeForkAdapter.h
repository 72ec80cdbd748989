#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Qoder, CodeBuddy, Factory and current Qwen Code: agents with Claude Code's hooks, each with its
/// own selection of them and its own settings file.
class ClaudeForkAdapter : public AgentAdapter {
public:
    /// The path is relative to the home folder.
    ClaudeForkAdapter(AgentKind kind, QString settingsPath, QStringList nativeEvents,
                      QStringList decisionEvents, const AgentContract &contract = {});

    static QStringList baseEvents();
    static QStringList extendedEvents();

    AgentKind kind() const override { return m_kind; }
    QStringList nativeEvents() const override { return m_nativeEvents; }

    /// A permission request that can't be answered from here still means that a person is needed.
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    std::optional<QString> matcher(const QString &native) const override;
    QStringList decisionEvents() const override { return m_decisionEvents; }
    std::optional<QByteArray> encodeDecision(const AgentDecision &decision,
                                             const std::optional<QString> &tool,
                                             QByteArrayView payload,
                                             const QString &nativeEvent) const override;
    AgentIntegration integration() const override;
    TranscriptInfo readTranscript(const QString &path) const override;
    bool transcriptTellsProgress() const override { return m_kind != AgentKind::qwen; }
    std::vector<HooksSwitch> hooksSwitches() const override;

private:
    AgentKind m_kind;
    QString m_settingsPath;
    QStringList m_nativeEvents;
    QStringList m_decisionEvents;
};

} // namespace morvane
