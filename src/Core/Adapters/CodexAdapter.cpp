#include "Core/Adapters/CodexAdapter.h"

#include "Core/Adapters/CodexTranscript.h"

namespace morvane {

QStringList CodexAdapter::nativeEvents() const {
    QStringList events{QStringLiteral("SessionStart"), QStringLiteral("UserPromptSubmit"),
                       QStringLiteral("PreToolUse"),   QStringLiteral("PermissionRequest"),
                       QStringLiteral("Stop"),         QStringLiteral("SubagentStop"),
                       QStringLiteral("SessionEnd")};
    if (contract().tellsInterruptions) {
        events << QStringLiteral("Interrupt");
    }
    return events;
}

std::optional<CanonicalEvent>
CodexAdapter::canonical(const QString &native,
                        const std::optional<QString> &notificationType) const {
    if (native == QLatin1String("PermissionRequest")) {
        return CanonicalEvent::permissionRequest;
    }
    if (native == QLatin1String("Interrupt") && contract().tellsInterruptions) {
        return CanonicalEvent::sessionStart; // open as at its start, needing nobody
    }
    return claudeCanonical(native, notificationType);
}

std::optional<QString> CodexAdapter::matcher(const QString &native) const {
    return native == QLatin1String("PreToolUse") ? std::optional(QStringLiteral("*"))
                                                 : std::nullopt;
}

QStringList CodexAdapter::decisionEvents() const {
    return {QStringLiteral("PermissionRequest")};
}

QSet<QString> CodexAdapter::defaultPermissionModes() const {
    return {QStringLiteral("on-request")};
}

std::optional<QByteArray> CodexAdapter::encodeDecision(const AgentDecision &decision,
                                                       const std::optional<QString> &,
                                                       QByteArrayView,
                                                       const QString &nativeEvent) const {
    switch (decision.kind) {
    case AgentDecision::Kind::allow:
    case AgentDecision::Kind::allowRemembering:
        return decisionEnvelope(nativeEvent, R"({"behavior":"allow"})");
    case AgentDecision::Kind::deny:
        return decisionEnvelope(nativeEvent, R"({"behavior":"deny"})");
    case AgentDecision::Kind::answer:
    case AgentDecision::Kind::ask:
        break;
    }
    return std::nullopt;
}

AgentIntegration CodexAdapter::integration() const {
    return JsonHooks{inHome(QStringLiteral(".codex/hooks.json")), QStringLiteral("hooks")};
}

std::optional<QString> CodexAdapter::reviewsPath() const {
    return contract().reviewsHooks ? std::optional(inHome(QStringLiteral(".codex/config.toml")))
                                   : std::nullopt;
}

TranscriptInfo CodexAdapter::readTranscript(const QString &path) const {
    return TranscriptReader::readTail(path, contract().everyPhaseCounts
                                                ? CodexTranscript::takeLineOfAnyPhase
                                                : CodexTranscript::takeLine);
}

std::optional<TranscriptFolder> CodexAdapter::transcriptFolder() const {
    return TranscriptFolder{inHome(QStringLiteral(".codex/sessions")),
                            TranscriptFolder::Depth::any};
}

std::optional<AgentRelease> CodexAdapter::transcriptRelease(const QString &path) const {
    const auto origin = transcriptOrigin(path);
    return origin ? origin->release : std::nullopt;
}

std::optional<TranscriptOrigin> CodexAdapter::transcriptOrigin(const QString &path) const {
    return TranscriptReader::readOrigin(path, CodexTranscript::findOrigin);
}

} // namespace morvane
