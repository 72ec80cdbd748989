#include "Core/Adapters/ClaudeAdapter.h"

#include "Core/Adapters/ClaudeTranscript.h"
#include "Core/Ground/JsonMembers.h"
#include "Core/Ground/JsonObject.h"

#include <QFileInfo>
#include <nlohmann/json.hpp>

namespace morvane {

namespace {

using nlohmann::json;

json rememberedRule(const std::string &tool, AgentDecision::Scope scope) {
    const bool forSession = scope == AgentDecision::Scope::session;
    return {
        {"rule", tool}, {"action", "allow"}, {"remembering", forSession ? "session" : "permanent"}};
}

/// A permanent rule applies to this person in this project.
json ruleUpdate(const std::string &tool, AgentDecision::Scope scope) {
    const bool forSession = scope == AgentDecision::Scope::session;
    return json::array({{{"type", "addRules"},
                         {"rules", json::array({{{"toolName", tool}}})},
                         {"behavior", "allow"},
                         {"destination", forSession ? "session" : "localSettings"}}});
}

json allowing(const AgentDecision &decision, const std::optional<QString> &tool,
              AgentContract::Remembering form) {
    json result{{"behavior", "allow"}};
    if (tool && !tool->isEmpty()) {
        const bool isUpdate = form == AgentContract::Remembering::ruleUpdate;
        result["updatedPermissions"] =
            (isUpdate ? ruleUpdate : rememberedRule)(tool->toStdString(), decision.scope);
    }
    return result;
}

/// The agent runs the tool with the input that it gets back, so all of it goes back just as it is
/// spelled. None when there is no input.
std::optional<std::string_view> inputOf(QByteArrayView payload) {
    if (!JsonObject::parse(payload)) {
        return std::nullopt;
    }
    const std::string_view body(payload.data(), static_cast<std::size_t>(payload.size()));
    const auto input = JsonMembers::find(body, u"tool_input");
    return input && input->starts_with('{') ? input : std::nullopt;
}

std::optional<std::string> givingBack(QByteArrayView payload) {
    const auto input = inputOf(payload);
    return input
               ? std::optional(R"({"behavior":"allow","updatedInput":)" + std::string(*input) + "}")
               : std::nullopt;
}

/// Gives the input back with the answers put in; none when there is no input.
std::optional<std::string> answering(const AgentDecision &decision, QByteArrayView payload) {
    const auto input = inputOf(payload);
    if (!input) {
        return std::nullopt;
    }
    json answers = json::object();
    for (auto entry = decision.answers.begin(); entry != decision.answers.end(); ++entry) {
        answers[entry.key().toStdString()] = entry.value().toStdString();
    }
    std::string text(R"({"behavior":"allow","updatedInput":{)");
    for (const auto &[key, value] : JsonMembers::of(*input)) {
        if (key != "answers") {
            text.append("\"").append(key).append("\":").append(value).append(",");
        }
    }
    return text.append(R"("answers":)").append(answers.dump()).append("}}");
}

} // namespace

QStringList ClaudeAdapter::nativeEvents() const {
    return {QStringLiteral("SessionStart"), QStringLiteral("UserPromptSubmit"),
            QStringLiteral("PreToolUse"),   QStringLiteral("Notification"),
            QStringLiteral("Stop"),         QStringLiteral("StopFailure"),
            QStringLiteral("SubagentStop"), QStringLiteral("SessionEnd")};
}

std::optional<CanonicalEvent>
ClaudeAdapter::canonical(const QString &native,
                         const std::optional<QString> &notificationType) const {
    if (native == QLatin1String("PermissionRequest")) {
        return CanonicalEvent::permissionRequest;
    }
    return claudeCanonical(native, notificationType);
}

std::optional<QString> ClaudeAdapter::matcher(const QString &native) const {
    return native == QLatin1String("PreToolUse") ? std::optional(QStringLiteral("*"))
                                                 : std::nullopt;
}

QStringList ClaudeAdapter::decisionEvents() const {
    return {QStringLiteral("PermissionRequest")};
}

std::optional<QByteArray> ClaudeAdapter::encodeDecision(const AgentDecision &decision,
                                                        const std::optional<QString> &tool,
                                                        QByteArrayView payload,
                                                        const QString &nativeEvent) const {
    std::optional<std::string> result;
    switch (decision.kind) {
    case AgentDecision::Kind::allow:
        result = tool && isPlanTool(*tool) ? givingBack(payload) : R"({"behavior":"allow"})";
        break;
    case AgentDecision::Kind::deny:
        result = R"({"behavior":"deny"})";
        break;
    case AgentDecision::Kind::allowRemembering:
        result = allowing(decision, tool, contract().remembering).dump();
        break;
    case AgentDecision::Kind::answer:
        result = answering(decision, payload);
        break;
    case AgentDecision::Kind::ask:
        break;
    }
    return result ? std::optional(decisionEnvelope(nativeEvent, *result)) : std::nullopt;
}

AgentIntegration ClaudeAdapter::integration() const {
    return JsonHooks{inHome(QStringLiteral(".claude/settings.json")), QStringLiteral("hooks")};
}

/// The beginning of the transcript doesn't name its release, so the turn's state is always read.
/// The release whose hooks call decides whether it counts.
TranscriptInfo ClaudeAdapter::readTranscript(const QString &path) const {
    return TranscriptReader::readTail(path, ClaudeTranscript::takeLineWithTurns);
}

std::optional<TranscriptFolder> ClaudeAdapter::transcriptFolder() const {
    return TranscriptFolder{inHome(QStringLiteral(".claude/projects")),
                            TranscriptFolder::Depth::oneBelow};
}

std::optional<TranscriptOrigin> ClaudeAdapter::transcriptOrigin(const QString &path) const {
    auto origin = TranscriptReader::readOrigin(path, ClaudeTranscript::findOrigin)
                      .value_or(TranscriptOrigin());
    origin.sessionID = QFileInfo(path).completeBaseName();
    return origin;
}

std::vector<HooksSwitch> ClaudeAdapter::hooksSwitches() const {
    return {{{QStringLiteral("disableAllHooks")}, true}};
}

std::optional<NotificationMute> ClaudeAdapter::notificationMute() const {
    return NotificationMute{QStringLiteral("preferredNotifChannel"),
                            QStringLiteral("notifications_disabled")};
}

std::optional<StatusLineFeed> ClaudeAdapter::statusLineFeed() const {
    return StatusLineFeed{QStringLiteral("statusLine")};
}

} // namespace morvane
