#pragma once

#include "Core/Agents/AgentQuestion.h"
#include "Core/Agents/ReadableInput.h"
#include "Platform/Time.h"

#include <QMap>

namespace morvane {

/// Questions whose hook waits for an option to be chosen for each.
struct PendingQuestion {
    QString id; ///< the decision id under which the server has parked the hook
    QList<AgentQuestion> questions;
    QString toolName;               ///< the tool, which any answer allows to run
    bool onlyAsks = false;          ///< the tool does nothing but ask
    ReadableInput input;            ///< the tool's input besides the questions
    QMap<QString, QString> answers; ///< question text to the label of the chosen option
    Date expiresAt;                 ///< for display: the server reports the expiry itself

    /// The position of the first question without an answer, or -1.
    qsizetype firstUnanswered() const;

    friend bool operator==(const PendingQuestion &, const PendingQuestion &) = default;
};

} // namespace morvane
