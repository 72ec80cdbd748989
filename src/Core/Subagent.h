#pragma once

#include <QString>
#include <QUuid>

namespace morvane {

/// A subagent that a session started in its present turn.
struct Subagent {
    QUuid id;
    QString task;
    bool done = false;

    friend bool operator==(const Subagent &, const Subagent &) = default;
};

} // namespace morvane
