#include "Core/Adapters/ClaudeForkAdapter.h"

#include "Core/Adapters/ClaudeTranscript.h"
#include "Core/Adapters/FactoryTranscript.h"
#include "Core/Adapters/GeminiTranscript.h"

namespace morvane {

ClaudeForkAdapter::ClaudeForkAdapter(AgentKind kind, QString settingsPath, QStringList nativeEvents,
                                     QStringList decisionEvents, const AgentContract &contract)
    : AgentAdapter(contract), m_kind(kind), m_settingsPath(std::move(settingsPath)),
      m_nativeEvents(std::move(nativeEvents)), m_decisionEvents(std::move(decisionEvents)) {}

QStringList ClaudeForkAdapter::baseEvents() {
    return {QStringLiteral("SessionStart"), QStringLiteral("UserPromptSubmit"),
            QStringLiteral("PreToolUse"),   QStringLiteral("Notification"),
            QStringLiteral("Stop"),         QStringLiteral("SubagentStop"),
            QStringLiteral("SessionEnd")};
}

QStringList ClaudeForkAdapter::extendedEvents() {
    return baseEvents() << QStringLiteral("PermissionRequest") << QStringLiteral("StopFailure");
}

std::optional<CanonicalEvent>
ClaudeForkAdapter::canonical(const QString &native,
                             const std::optional<QString> &notificationType) const {
    if (native == QLatin1String("PermissionRequest")) {
        return m_decisionEvents.contains(native) ? CanonicalEvent::permissionRequest
                                                 : CanonicalEvent::needsInput;
    }
    return claudeCanonical(native, notificationType);
}

std::optional<QString> ClaudeForkAdapter::matcher(const QString &native) const {
    const bool matchesTools =
        native == QLatin1String("PreToolUse") || m_decisionEvents.contains(native);
    return matchesTools ? std::optional(QStringLiteral("*")) : std::nullopt;
}

std::optional<QByteArray> ClaudeForkAdapter::encodeDecision(const AgentDecision &decision,
                                                            const std::optional<QString> &,
                                                            QByteArrayView,
                                                            const QString &nativeEvent) const {
    switch (decision.kind) {
    case AgentDecision::Kind::allow:
    case AgentDecision::Kind::allowRemembering:
    case AgentDecision::Kind::answer:
        return decisionEnvelope(nativeEvent, R"({"behavior":"allow"})");
    case AgentDecision::Kind::deny:
        return decisionEnvelope(nativeEvent, R"({"behavior":"deny"})");
    case AgentDecision::Kind::ask:
        break;
    }
    return std::nullopt;
}

AgentIntegration ClaudeForkAdapter::integration() const {
    return JsonHooks{inHome(m_settingsPath), QStringLiteral("hooks")};
}

/// Qwen Code still keeps its chats in the form of its releases without Claude Code's hooks.
TranscriptInfo ClaudeForkAdapter::readTranscript(const QString &path) const {
    switch (m_kind) {
    case AgentKind::qwen:
        return TranscriptReader::readTail(path, GeminiTranscript::takeLineOfQwen);
    case AgentKind::factory:
        return FactoryTranscript::read(path);
    default:
        return TranscriptReader::readTail(path, ClaudeTranscript::takeLine);
    }
}

/// Only switches that were seen to work or found in an agent's own code. CodeBuddy names one too,
/// but runs its hooks all the same.
std::vector<HooksSwitch> ClaudeForkAdapter::hooksSwitches() const {
    const HooksSwitch all{{QStringLiteral("disableAllHooks")}, true};
    switch (m_kind) {
    case AgentKind::qwen:
        return {all};
    case AgentKind::qoder:
        return {all, {{QStringLiteral("hooksConfig"), QStringLiteral("enabled")}, false}};
    case AgentKind::factory:
        return {{{QStringLiteral("hooks"), QStringLiteral("hooksDisabled")}, true}};
    default:
        return {};
    }
}

} // namespace morvane
