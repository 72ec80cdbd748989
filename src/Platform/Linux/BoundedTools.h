#pragma once

#include "Platform/Tools.h"

#include <QObject>

namespace morvane {

class Scheduler;

/// Each command line in a session of its own, away from the terminal that this program may have
/// been started from. When it has ended, or has to, so has all that is left in its group. What it
/// says on standard error is dropped.
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
