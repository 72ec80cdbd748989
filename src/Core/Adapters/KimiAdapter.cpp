#include "Core/Adapters/KimiAdapter.h"

namespace morvane {

QStringList KimiAdapter::nativeEvents() const {
    return {QStringLiteral("SessionStart"), QStringLiteral("UserPromptSubmit"),
            QStringLiteral("PreToolUse"),   QStringLiteral("Notification"),
            QStringLiteral("Stop"),         QStringLiteral("SessionEnd")};
}

std::optional<CanonicalEvent>
KimiAdapter::canonical(const QString &native,
                       const std::optional<QString> &notificationType) const {
    return claudeCanonical(native, notificationType);
}

std::optional<QString> KimiAdapter::matcher(const QString &native) const {
    return native == QLatin1String("PreToolUse") ? std::optional(QStringLiteral(".*"))
                                                 : std::nullopt;
}

AgentIntegration KimiAdapter::integration() const {
    return TomlHooks{inHome(QStringLiteral(".kimi/config.toml"))};
}

} // namespace morvane
