#include "Core/Agents/AgentAdapter.h"

#include "Core/Ground/JsonObject.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <nlohmann/json.hpp>

namespace morvane {

std::optional<QString> AgentAdapter::matcher(const QString &) const {
    return std::nullopt;
}

std::optional<QByteArray> AgentAdapter::encodeDecision(const AgentDecision &,
                                                       const std::optional<QString> &,
                                                       QByteArrayView, const QString &) const {
    return std::nullopt;
}

std::optional<QString> AgentAdapter::sessionID(const JsonObject &body) const {
    return body.string("session_id");
}

std::optional<QString> AgentAdapter::cwd(const JsonObject &body) const {
    return body.string("cwd");
}

TranscriptInfo AgentAdapter::readTranscript(const QString &) const {
    return {};
}

std::optional<TranscriptOrigin> AgentAdapter::transcriptOrigin(const QString &) const {
    return std::nullopt;
}

std::optional<AgentRelease> AgentAdapter::transcriptRelease(const QString &) const {
    return std::nullopt;
}

bool AgentAdapter::isSession(const TranscriptOrigin &origin) const {
    return m_contract.spawningTool.isEmpty() || origin.root.isEmpty() ||
           origin.root == origin.sessionID;
}

bool AgentAdapter::launchesSubagent(const QString &toolName) const {
    return !toolName.isEmpty() && toolName == m_contract.spawningTool;
}

bool AgentAdapter::isPlanTool(const QString &toolName) const {
    return !toolName.isEmpty() && toolName == m_contract.planTool;
}

nlohmann::json AgentAdapter::hookEntry(const QString &command,
                                       const std::optional<QString> &matcher,
                                       const HookWait &wait) const {
    nlohmann::json handler{{"type", "command"}, {"command", command.toStdString()}};
    handler["timeout"] = m_contract.hookTimeUnit == AgentContract::TimeUnit::milliseconds
                             ? std::chrono::milliseconds(wait.limit).count()
                             : wait.limit.count();
    if (!wait.isAwaited && m_contract.hasAsyncHooks) {
        handler["async"] = true;
    }
    nlohmann::json entry{{"hooks", nlohmann::json::array({handler})}};
    if (matcher) {
        entry["matcher"] = matcher->toStdString();
    }
    return entry;
}

nlohmann::json AgentAdapter::extraRootKeys() const {
    return nlohmann::json::object();
}

QString AgentAdapter::integrationPath() const {
    struct Path {
        QString operator()(const JsonHooks &hooks) const { return hooks.settingsPath; }
        QString operator()(const TomlHooks &hooks) const { return hooks.settingsPath; }
        QString operator()(const PluginFile &plugin) const { return plugin.filePath; }
        QString operator()(const Unsupported &) const { return {}; }
    };
    return std::visit(Path(), integration());
}

bool AgentAdapter::isPresent() const {
    const AgentIntegration where = integration();
    if (std::holds_alternative<Unsupported>(where)) {
        return false;
    }
    QDir directory = QFileInfo(integrationPath()).dir();
    if (std::holds_alternative<PluginFile>(where)) {
        // A plugin lies in a folder for plugins, within the agent's own.
        directory.setPath(QFileInfo(directory.path()).path());
    }
    return hasRun(directory.path());
}

bool AgentAdapter::hasRun(const QString &directory) {
    static const QSet<QString> incidentalFiles{
        QStringLiteral(".DS_Store"),   QStringLiteral(".localized"), QStringLiteral("Icon\r"),
        QStringLiteral("desktop.ini"), QStringLiteral(".gitkeep"),   QStringLiteral(".keep"),
    };
    QDirIterator entries(directory, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        entries.next();
        if (!incidentalFiles.contains(entries.fileName())) {
            return true;
        }
    }
    return false;
}

bool AgentAdapter::isInstallable() const {
    return !std::holds_alternative<Unsupported>(integration());
}

QString AgentAdapter::integrationDescription() const {
    const AgentIntegration where = integration();
    if (const auto *unsupported = std::get_if<Unsupported>(&where)) {
        return unsupported->reason;
    }
    const QString path = integrationPath();
    const QString home = QDir::homePath() + QLatin1Char('/');
    return path.startsWith(home) ? QLatin1String("~/") + path.mid(home.size()) : path;
}

std::optional<CanonicalEvent>
AgentAdapter::claudeCanonical(const QString &native,
                              const std::optional<QString> &notificationType) const {
    static const QHash<QString, CanonicalEvent> events{
        {QStringLiteral("SessionStart"), CanonicalEvent::sessionStart},
        {QStringLiteral("UserPromptSubmit"), CanonicalEvent::promptSubmit},
        {QStringLiteral("PreToolUse"), CanonicalEvent::toolUse},
        {QStringLiteral("Stop"), CanonicalEvent::turnEnd},
        {QStringLiteral("StopFailure"), CanonicalEvent::turnFailed},
        {QStringLiteral("SubagentStop"), CanonicalEvent::subagentStop},
        {QStringLiteral("SessionEnd"), CanonicalEvent::sessionEnd},
    };
    static const QHash<QString, CanonicalEvent> notifications{
        {QStringLiteral("permission_prompt"), CanonicalEvent::needsInput},
        {QStringLiteral("agent_needs_input"), CanonicalEvent::needsInput},
        {QStringLiteral("idle_prompt"), CanonicalEvent::idle},
        {QStringLiteral("agent_completed"), CanonicalEvent::idle},
    };
    static const QSet<QString> waitsOfOthers{
        QStringLiteral("elicitation_dialog"),
        QStringLiteral("elicitation_url_dialog"),
        QStringLiteral("worker_permission_prompt"),
    };
    if (native != QLatin1String("Notification")) {
        return lookUp(events, native);
    }
    const QString type = notificationType.value_or(QString());
    return m_contract.tellsWhoElseAsks && waitsOfOthers.contains(type)
               ? std::optional(CanonicalEvent::needsInput)
               : lookUp(notifications, type);
}

std::optional<CanonicalEvent> AgentAdapter::lookUp(const QHash<QString, CanonicalEvent> &events,
                                                   const QString &name) {
    const auto found = events.constFind(name);
    return found == events.constEnd() ? std::nullopt : std::optional(*found);
}

QString AgentAdapter::inHome(const QString &relativePath) {
    return QDir::homePath() + QLatin1Char('/') + relativePath;
}

QByteArray AgentAdapter::decisionEnvelope(const QString &nativeEvent, std::string_view decision) {
    std::string envelope(R"({"hookSpecificOutput":{"decision":)");
    envelope.append(decision).append(R"(,"hookEventName":)");
    envelope.append(nlohmann::json(nativeEvent.toStdString()).dump()).append("}}");
    return QByteArray::fromStdString(envelope);
}

} // namespace morvane
