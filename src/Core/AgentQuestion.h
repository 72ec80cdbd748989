#pragma once

#include "Core/AgentOption.h"

#include <QList>

namespace morvane {

/// A multiple-choice question of an agent. Its text identifies it.
struct AgentQuestion {
    QString question;
    std::optional<QString> header; ///< a word or two on what the question is about
    QList<AgentOption> options;    ///< never empty
    bool multiSelect = false;      ///< several options may be chosen together

    friend bool operator==(const AgentQuestion &, const AgentQuestion &) = default;
};

} // namespace morvane
