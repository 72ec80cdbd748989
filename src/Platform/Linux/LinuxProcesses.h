#pragma once

#include "Platform/Processes.h"

namespace morvane {

class BackgroundPool;
class Scheduler;

/// Reads processes from /proc, and learns of their ends through pidfds, which cost nothing until
/// then. To watch a process of another PID namespace, such as a sandbox's, it searches all
/// processes here for it.
class LinuxProcesses : public Processes {
public:
    /// The scheduler must outlive this object, which must outlive the pool.
    LinuxProcesses(Scheduler &scheduler, BackgroundPool &background)
        : m_scheduler(scheduler), m_background(background) {}

    Task whenEnded(const ProcessIdentity &process, std::function<void()> ended) override;
    std::optional<QStringList> workingDirectories(const QString &program) const override;
    std::optional<std::int64_t> listenerAt(const QString &socket) const override;
    std::optional<bool> hearsKeys(const ProcessIdentity &process) const override;
    std::optional<std::int64_t> terminalOpener(const ProcessIdentity &process) const override;
    std::optional<ProcessIdentity> identityOf(std::int64_t id) const override;
    QByteArrayList environment(std::int64_t process) const override;
    QString fileOf(const ProcessIdentity &process, const QString &path) const override;

    /// Whether the process's number belongs to our own PID namespace, not to a sandbox's.
    static bool isNumberedHere(const ProcessIdentity &process);

    /// The process's number in our own PID namespace; none if it can't be seen or has ended.
    /// Searches all processes if the process isn't numbered here; safe from any thread.
    static std::optional<std::int64_t> numberHere(const ProcessIdentity &process);

    /// The environment that the process was started with, read from a folder like /proc.
    static QByteArrayList environment(std::int64_t process, const QString &folder);

private:
    Task whenFoundHasEnded(const ProcessIdentity &process, std::function<void()> ended);

    Scheduler &m_scheduler;
    BackgroundPool &m_background;
};

} // namespace morvane
