#pragma once

#include "Core/Agents/AgentAdapter.h"

namespace morvane {

/// Cursor: hooks of a shape of its own, which never wait for an answer.
class CursorAdapter : public AgentAdapter {
public:
    AgentKind kind() const override { return AgentKind::cursor; }
    QStringList nativeEvents() const override;
    std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const override;

    /// The conversation's id wherever there is one, even an empty one: an event with an empty one
    /// belongs to no session, and the fallback would assign it to another.
    std::optional<QString> sessionID(const JsonObject &body) const override;
    std::optional<QString> cwd(const JsonObject &body) const override;
    nlohmann::json hookEntry(const QString &command, const std::optional<QString> &matcher,
                             const HookWait &wait) const override;
    nlohmann::json extraRootKeys() const override;
    AgentIntegration integration() const override;
};

} // namespace morvane
