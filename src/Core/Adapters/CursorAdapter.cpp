#include "Core/Adapters/CursorAdapter.h"

#include "Core/Agents/HookTimeout.h"
#include "Core/Ground/JsonObject.h"

#include <nlohmann/json.hpp>

namespace morvane {

QStringList CursorAdapter::nativeEvents() const {
    return {QStringLiteral("sessionStart"), QStringLiteral("beforeSubmitPrompt"),
            QStringLiteral("preToolUse"),   QStringLiteral("stop"),
            QStringLiteral("subagentStop"), QStringLiteral("sessionEnd")};
}

std::optional<CanonicalEvent> CursorAdapter::canonical(const QString &native,
                                                       const std::optional<QString> &) const {
    static const QHash<QString, CanonicalEvent> events{
        {QStringLiteral("sessionStart"), CanonicalEvent::sessionStart},
        {QStringLiteral("beforeSubmitPrompt"), CanonicalEvent::promptSubmit},
        {QStringLiteral("preToolUse"), CanonicalEvent::toolUse},
        {QStringLiteral("stop"), CanonicalEvent::turnEnd},
        {QStringLiteral("subagentStop"), CanonicalEvent::subagentStop},
        {QStringLiteral("sessionEnd"), CanonicalEvent::sessionEnd},
    };
    return lookUp(events, native);
}

std::optional<QString> CursorAdapter::sessionID(const JsonObject &body) const {
    const auto conversation = body.string("conversation_id");
    return conversation ? conversation : AgentAdapter::sessionID(body);
}

std::optional<QString> CursorAdapter::cwd(const JsonObject &body) const {
    const auto directory = AgentAdapter::cwd(body);
    if (directory && !directory->isEmpty()) {
        return directory;
    }
    const auto roots = body.strings("workspace_roots");
    return roots && !roots->isEmpty() ? std::optional(roots->first()) : std::nullopt;
}

nlohmann::json CursorAdapter::hookEntry(const QString &command,
                                        const std::optional<QString> &matcher,
                                        const HookWait &) const {
    nlohmann::json entry{{"type", "command"},
                         {"command", command.toStdString()},
                         {"timeout", HookTimeout::event.count()}};
    if (matcher) {
        entry["matcher"] = matcher->toStdString();
    }
    return entry;
}

nlohmann::json CursorAdapter::extraRootKeys() const {
    return {{"version", 1}};
}

AgentIntegration CursorAdapter::integration() const {
    return JsonHooks{inHome(QStringLiteral(".cursor/hooks.json")), QStringLiteral("hooks")};
}

} // namespace morvane
