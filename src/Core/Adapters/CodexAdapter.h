#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Codex: takes a yes or a no, and neither rules nor answers to questions.
class CodexAdapter : public AgentAdapter {
public:
    using AgentAdapter::AgentAdapter;

    AgentKind kind() const override { return AgentKind::codex; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    std::optional<QString> matcher(const QString &native) const override;
    QStringList decisionEvents() const override;
    QSet<QString> defaultPermissionModes() const override;
    std::optional<QByteArray> encodeDecision(const AgentDecision &decision,
                                             const std::optional<QString> &tool,
                                             QByteArrayView payload,
                                             const QString &nativeEvent) const override;
    AgentIntegration integration() const override;
    std::optional<QString> reviewsPath() const override;
    TranscriptInfo readTranscript(const QString &path) const override;
    bool transcriptTellsProgress() const override { return true; }
    std::optional<TranscriptFolder> transcriptFolder() const override;
    std::optional<TranscriptOrigin> transcriptOrigin(const QString &path) const override;
    std::optional<AgentRelease> transcriptRelease(const QString &path) const override;
};

} // namespace morvane
