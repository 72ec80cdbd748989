#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Claude Code: the one agent that takes rules and structured answers with a decision.
class ClaudeAdapter : public AgentAdapter {
public:
    using AgentAdapter::AgentAdapter;

    AgentKind kind() const override { return AgentKind::claude; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    bool reportsBackgroundTasks() const override { return true; }
    std::optional<QString> matcher(const QString &native) const override;
    QStringList decisionEvents() const override;
    bool supportsRememberedDecisions() const override { return true; }
    bool supportsQuestionAnswers() const override { return true; }
    std::optional<QString> questionTool() const override {
        return QStringLiteral("AskUserQuestion");
    }
    std::optional<QByteArray> encodeDecision(const AgentDecision &decision,
                                             const std::optional<QString> &tool,
                                             QByteArrayView payload,
                                             const QString &nativeEvent) const override;
    AgentIntegration integration() const override;
    TranscriptInfo readTranscript(const QString &path) const override;
    bool transcriptTellsProgress() const override { return true; }
    std::optional<TranscriptFolder> transcriptFolder() const override;
    std::optional<TranscriptOrigin> transcriptOrigin(const QString &path) const override;
    bool hasUsageMilestones() const override { return true; }
    std::vector<HooksSwitch> hooksSwitches() const override;
    std::optional<NotificationMute> notificationMute() const override;
    std::optional<StatusLineFeed> statusLineFeed() const override;
};

} // namespace morvane
