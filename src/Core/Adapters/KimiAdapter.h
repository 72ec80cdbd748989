#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Kimi CLI, which keeps its hooks in TOML.
class KimiAdapter : public AgentAdapter {
public:
    AgentKind kind() const override { return AgentKind::kimi; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;
    std::optional<QString> matcher(const QString &native) const override;
    AgentIntegration integration() const override;
};

} // namespace morvane
