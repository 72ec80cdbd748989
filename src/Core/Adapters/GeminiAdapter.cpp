#include "Core/Adapters/GeminiAdapter.h"

#include "Core/Adapters/GeminiTranscript.h"

namespace morvane {

GeminiAdapter::GeminiAdapter(AgentKind kind, QString settingsPath, const AgentContract &contract)
    : AgentAdapter(contract), m_kind(kind), m_settingsPath(std::move(settingsPath)) {}

QStringList GeminiAdapter::nativeEvents() const {
    return {QStringLiteral("SessionStart"), QStringLiteral("BeforeAgent"),
            QStringLiteral("BeforeTool"),   QStringLiteral("Notification"),
            QStringLiteral("AfterAgent"),   QStringLiteral("SessionEnd")};
}

std::optional<CanonicalEvent>
GeminiAdapter::canonical(const QString &native,
                         const std::optional<QString> &notificationType) const {
    static const QHash<QString, CanonicalEvent> events{
        {QStringLiteral("SessionStart"), CanonicalEvent::sessionStart},
        {QStringLiteral("BeforeAgent"), CanonicalEvent::promptSubmit},
        {QStringLiteral("BeforeTool"), CanonicalEvent::toolUse},
        {QStringLiteral("AfterAgent"), CanonicalEvent::turnEnd},
        {QStringLiteral("SessionEnd"), CanonicalEvent::sessionEnd},
    };
    if (native == QLatin1String("Notification")) {
        return notificationType == QLatin1String("ToolPermission")
                   ? std::optional(CanonicalEvent::needsInput)
                   : std::nullopt;
    }
    return lookUp(events, native);
}

std::optional<QString> GeminiAdapter::matcher(const QString &native) const {
    return native == QLatin1String("BeforeTool") ? std::optional(QStringLiteral(".*"))
                                                 : std::nullopt;
}

AgentIntegration GeminiAdapter::integration() const {
    return JsonHooks{inHome(m_settingsPath), QStringLiteral("hooks")};
}

TranscriptInfo GeminiAdapter::readTranscript(const QString &path) const {
    if (m_kind == AgentKind::qwen) {
        return TranscriptReader::readTail(path, GeminiTranscript::takeLineOfQwen);
    }
    return TranscriptReader::readTail(path, GeminiTranscript::takeLine, GeminiTranscript::tailSize);
}

std::vector<HooksSwitch> GeminiAdapter::hooksSwitches() const {
    if (m_kind == AgentKind::qwen) {
        return {{{QStringLiteral("disableAllHooks")}, true}};
    }
    return {{{QStringLiteral("hooksConfig"), QStringLiteral("enabled")}, false}};
}

} // namespace morvane
