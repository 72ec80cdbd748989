#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace morvane {

/// One choice that an agent offers with a question. Its label identifies it.
struct AgentOption {
    QString label;
    std::optional<QString> description;

    friend bool operator==(const AgentOption &, const AgentOption &) = default;
};

/// A multiple-choice question of an agent. Its text identifies it.
struct AgentQuestion {
    QString question;
    std::optional<QString> header; ///< a word or two on what the question is about
    QList<AgentOption> options;    ///< never empty
    bool multiSelect = false;      ///< several options may be chosen together
    bool isWhole = true;           ///< nothing that the agent sent of it is missing

    friend bool operator==(const AgentQuestion &, const AgentQuestion &) = default;
};

} // namespace morvane
