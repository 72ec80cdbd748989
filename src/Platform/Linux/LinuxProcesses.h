#pragma once

#include "Platform/Processes.h"

namespace morvane {

class Scheduler;

/// Processes as /proc shows them, and their ends by pidfds, which cost nothing until then.
class LinuxProcesses : public Processes {
public:
    explicit LinuxProcesses(Scheduler &scheduler) : m_scheduler(scheduler) {}

    Task whenEnded(const ProcessIdentity &process, std::function<void()> ended) override;
    std::optional<QStringList> workingDirectories(const QString &program) const override;
    std::optional<std::int64_t> listenerAt(const QString &socket) const override;
    std::optional<bool> hearsKeys(const ProcessIdentity &process) const override;
    std::optional<std::int64_t> terminalOpener(const ProcessIdentity &process) const override;
    QProcessEnvironment environment(std::int64_t process) const override;

    /// None for a process that isn't there.
    static std::optional<ProcessIdentity> identityOf(std::int64_t id);

private:
    Scheduler &m_scheduler;
};

} // namespace morvane
