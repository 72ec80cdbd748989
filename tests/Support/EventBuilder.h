#pragma once

#include "Core/Intake/HookEvent.h"

namespace morvane {

/// A hook event of Claude Code in session "s", with the fields that a test changes.
class EventBuilder {
public:
    explicit EventBuilder(CanonicalEvent kind) {
        m_event.kind = kind;
        m_event.sessionID = "s";
    }

    /// A permission request whose hook waits under this id.
    static EventBuilder parked(const QString &decisionID) {
        return EventBuilder(CanonicalEvent::permissionRequest)
            .with(&HookEvent::decisionID, decisionID)
            .tool("Bash")
            .given(R"({"command": "make"})");
    }

    /// The tool's input, a JSON object.
    EventBuilder given(std::string_view input) const {
        return with(&HookEvent::toolInput, ReadableInput::of(input));
    }

    EventBuilder in(const QString &sessionID) const {
        return with(&HookEvent::sessionID, sessionID);
    }
    EventBuilder at(const QString &cwd) const { return with(&HookEvent::cwd, cwd); }
    EventBuilder of(AgentKind agent) const { return with(&HookEvent::agent, agent); }
    EventBuilder tool(const QString &name) const { return with(&HookEvent::toolName, name); }

    /// A single question for each text, with the options "Yes" and "No".
    EventBuilder asking(const QStringList &texts, bool multiSelect = false) const {
        QList<AgentQuestion> questions;
        for (const QString &text : texts) {
            questions.append({text, {}, {{"Yes", {}}, {"No", {}}}, multiSelect});
        }
        return with(&HookEvent::questions, questions);
    }

    EventBuilder question(const AgentQuestion &question) const {
        return with(&HookEvent::questions, QList<AgentQuestion>{question});
    }

    EventBuilder background(const QStringList &types) const {
        QList<BackgroundTask> tasks;
        for (const QString &type : types) {
            tasks.append({type, {}});
        }
        return with(&HookEvent::backgroundTasks, tasks);
    }

    template <typename Field, typename Value>
    EventBuilder with(Field HookEvent::*field, const Value &value) const {
        EventBuilder copy = *this;
        copy.m_event.*field = value;
        return copy;
    }

    operator const HookEvent &() const { return m_event; }

private:
    HookEvent m_event;
};

} // namespace morvane
