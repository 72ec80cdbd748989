#pragma once

#include "Platform/Tools.h"

#include <QObject>

namespace morvane {

class Scheduler;

/// Runs each command line in its own session, detached from any terminal that this program was
/// started from. When the command has ended or its time is up, its whole process group is killed.
/// Standard error is dropped.
class BoundedTools : public QObject, public Tools {
    Q_OBJECT

public:
    explicit BoundedTools(Scheduler &scheduler) : m_scheduler(scheduler) {}

    void run(const Command &command, Finished finished) override;

private:
    class Child;

    Scheduler &m_scheduler;
};

} // namespace morvane
