#pragma once

#include <QMap>
#include <QString>

namespace morvane {

/// What a person, or a time limit, decided about a hook that waits.
struct AgentDecision {
    enum class Kind {
        allowRemembering, ///< yes, and don't ask again within `scope`
        answer,           ///< the agent's questions are answered by `answers`
        allow,
        deny,
        ask, ///< no decision here: the agent's own prompt takes over
    };
    enum class Scope {
        session,
        permanent,
    };

    Kind kind = Kind::ask;
    Scope scope = Scope::session;
    QMap<QString, QString> answers; ///< question text to the label of the chosen option

    static AgentDecision allowRemembering(Scope scope) {
        return {Kind::allowRemembering, scope, {}};
    }
    static AgentDecision answer(QMap<QString, QString> answers) {
        return {Kind::answer, Scope::session, std::move(answers)};
    }
    static AgentDecision allow() { return {Kind::allow, Scope::session, {}}; }
    static AgentDecision deny() { return {Kind::deny, Scope::session, {}}; }
    static AgentDecision ask() { return {}; }

    friend bool operator==(const AgentDecision &, const AgentDecision &) = default;
};

} // namespace morvane
