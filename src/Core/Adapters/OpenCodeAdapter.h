#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// OpenCode, whose hooks are a plugin of ours that posts by itself, whichever release loads it.
class OpenCodeAdapter : public AgentAdapter {
public:
    OpenCodeAdapter() : AgentAdapter({.tellsLastWords = true}) {}

    AgentKind kind() const override { return AgentKind::opencode; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    AgentIntegration integration() const override;
};

} // namespace morvane
