#pragma once

#include "Core/Agents/AgentContract.h"
#include "Core/Agents/AgentDecision.h"
#include "Core/Agents/AgentIntegration.h"
#include "Core/Agents/AgentKind.h"
#include "Core/Agents/CanonicalEvent.h"
#include "Core/Agents/HookWait.h"
#include "Core/Agents/TranscriptInfo.h"
#include "Core/Agents/TranscriptOrigin.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string_view>
#include <vector>

namespace morvane {

class JsonObject;

/// Everything in which one agent differs from the others. Adapters are immutable and owned by
/// `AgentRegistry`; they are safe from any thread.
class AgentAdapter {
public:
    explicit AgentAdapter(const AgentContract &contract = {}) : m_contract(contract) {}
    AgentAdapter(const AgentAdapter &) = delete;
    AgentAdapter &operator=(const AgentAdapter &) = delete;
    virtual ~AgentAdapter() = default;

    virtual AgentKind kind() const = 0;

    /// The behaviour of the releases that this adapter is for.
    const AgentContract &contract() const { return m_contract; }

    /// The names of the events to hook, in the order in which they are installed.
    virtual QStringList nativeEvents() const = 0;

    /// What the agent's event means, or none for one that tells us nothing.
    virtual std::optional<CanonicalEvent>
    canonical(const QString &native, const std::optional<QString> &notificationType) const = 0;

    /// True when the end of a turn lists what still runs in the background.
    virtual bool reportsBackgroundTasks() const { return false; }

    /// The matcher of the event's hook entry, in the agent's own pattern language.
    virtual std::optional<QString> matcher(const QString &native) const;

    /// The native events whose hook can wait for an answer.
    virtual QStringList decisionEvents() const { return {}; }

    bool supportsDecisions() const { return !decisionEvents().isEmpty(); }

    virtual bool supportsRememberedDecisions() const { return false; }
    virtual bool supportsQuestionAnswers() const { return false; }

    /// The agent's tool that only asks its person questions.
    virtual std::optional<QString> questionTool() const { return std::nullopt; }

    /// The permission modes that need no mention.
    virtual QSet<QString> defaultPermissionModes() const { return {QStringLiteral("default")}; }

    /// The answer to a waiting hook in the agent's own JSON. None lets the agent go on as it would
    /// without a hook. `payload` is the hook's request body as it arrived.
    virtual std::optional<QByteArray> encodeDecision(const AgentDecision &decision,
                                                     const std::optional<QString> &tool,
                                                     QByteArrayView payload,
                                                     const QString &nativeEvent) const;

    virtual AgentIntegration integration() const = 0;

    /// The file that the hooks go into; empty where there is none.
    QString integrationPath() const;

    virtual std::optional<QString> sessionID(const JsonObject &body) const;
    virtual std::optional<QString> cwd(const JsonObject &body) const;

    /// What the end of the agent's transcript tells; empty for an agent whose transcripts are not
    /// read. Reads a file, so not for the main thread.
    virtual TranscriptInfo readTranscript(const QString &path) const;

    /// True when it may also tell what a session is running with, not only how turns end.
    virtual bool transcriptTellsProgress() const { return false; }

    /// Where to find sessions that ran before this program started; none for an agent whose
    /// transcripts aren't searched.
    virtual std::optional<TranscriptFolder> transcriptFolder() const { return std::nullopt; }

    /// The session that a transcript in that folder belongs to; none for a file that isn't a
    /// transcript. Reads a file, so not for the main thread.
    virtual std::optional<TranscriptOrigin> transcriptOrigin(const QString &path) const;

    /// The release that wrote a transcript, where transcripts tell and it makes a difference. Reads
    /// a file, so not for the main thread.
    virtual std::optional<AgentRelease> transcriptRelease(const QString &path) const;

    /// False when the transcript is that of a subagent, whose session has a transcript of its own.
    bool isSession(const TranscriptOrigin &origin) const;

    /// True for a tool that launches a subagent in this agent alone.
    bool launchesSubagent(const QString &toolName) const;

    /// True for the tool that shows a plan and needs it back in the answer.
    bool isPlanTool(const QString &toolName) const;

    /// One entry of the settings file's hooks.
    virtual nlohmann::json hookEntry(const QString &command, const std::optional<QString> &matcher,
                                     const HookWait &wait) const;

    /// Keys to add at the root of the settings file, as an object.
    virtual nlohmann::json extraRootKeys() const;

    /// True when the agent seems to have been used on this machine. Reads a directory.
    virtual bool isPresent() const;

    /// False when the adapter was written from documentation alone.
    virtual bool isVerified() const { return true; }

    /// True when the agent's work counts against the limits whose milestones are shown meanwhile.
    virtual bool hasUsageMilestones() const { return false; }

    /// Where the agent records the hooks that its person has agreed to, if it runs no others.
    virtual std::optional<QString> reviewsPath() const { return std::nullopt; }

    /// Settings that keep the agent from running any hook; one of them is enough.
    virtual std::vector<HooksSwitch> hooksSwitches() const { return {}; }

    virtual std::optional<NotificationMute> notificationMute() const { return std::nullopt; }
    virtual std::optional<StatusLineFeed> statusLineFeed() const { return std::nullopt; }

    bool isInstallable() const;

    /// True when the directory holds a regular file that a program or person put there on purpose.
    /// The folder alone says nothing: an installer may have made it.
    static bool hasRun(const QString &directory);

    /// Where the hooks go, for a person: the file with the home folder as a tilde, or the reason
    /// why there are none.
    QString integrationDescription() const;

protected:
    /// The mapping of Claude Code's event names, which most agents share.
    std::optional<CanonicalEvent>
    claudeCanonical(const QString &native, const std::optional<QString> &notificationType) const;

    /// The event that a table has for a name, if any.
    static std::optional<CanonicalEvent> lookUp(const QHash<QString, CanonicalEvent> &events,
                                                const QString &name);

    /// The absolute path of a file named relative to the home folder.
    static QString inHome(const QString &relativePath);

    /// The envelope for an answer, around the agent's decision object as JSON.
    static QByteArray decisionEnvelope(const QString &nativeEvent, std::string_view decision);

private:
    const AgentContract m_contract;
};

} // namespace morvane
