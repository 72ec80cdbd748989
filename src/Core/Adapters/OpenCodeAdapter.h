#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// OpenCode, whose hooks are a plugin of ours that posts by itself.
class OpenCodeAdapter : public AgentAdapter {
public:
    AgentKind kind() const override { return AgentKind::opencode; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    AgentIntegration integration() const override;
};

} // namespace morvane
