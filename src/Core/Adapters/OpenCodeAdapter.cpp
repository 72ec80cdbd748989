#include "Core/Adapters/OpenCodeAdapter.h"

namespace morvane {

QStringList OpenCodeAdapter::nativeEvents() const {
    return {QStringLiteral("session.created"),     QStringLiteral("prompt.submit"),
            QStringLiteral("tool.execute.before"), QStringLiteral("permission.asked"),
            QStringLiteral("session.idle"),        QStringLiteral("session.deleted")};
}

std::optional<CanonicalEvent> OpenCodeAdapter::canonical(const QString &native,
                                                         const std::optional<QString> &) const {
    static const QHash<QString, CanonicalEvent> events{
        {QStringLiteral("session.created"), CanonicalEvent::sessionStart},
        {QStringLiteral("prompt.submit"), CanonicalEvent::promptSubmit},
        {QStringLiteral("tool.execute.before"), CanonicalEvent::toolUse},
        {QStringLiteral("permission.asked"), CanonicalEvent::needsInput},
        {QStringLiteral("session.idle"), CanonicalEvent::turnEnd},
        {QStringLiteral("session.error"), CanonicalEvent::turnFailed},
        {QStringLiteral("session.deleted"), CanonicalEvent::sessionEnd},
    };
    return lookUp(events, native);
}

AgentIntegration OpenCodeAdapter::integration() const {
    return PluginFile{inHome(QStringLiteral(".config/opencode/plugins/morvane.js"))};
}

} // namespace morvane
