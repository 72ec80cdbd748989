#pragma once

#include "Platform/Processes.h"

namespace morvane {

class BackgroundPool;
class Scheduler;

/// Processes as /proc shows them, and their ends by pidfds, which cost nothing until then. One of
/// another number space, such as a sandbox's, is looked for among all that are here, once it is
/// watched.
class LinuxProcesses : public Processes {
public:
    /// The scheduler outlives this, which outlives the pool.
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

    /// Whether the process has its number in our own space, not in a sandbox's.
    static bool isNumberedHere(const ProcessIdentity &process);

    /// The number that the process has in our own space; none where it can't be seen, or has ended.
    /// Looks at every process where that one isn't numbered here; safe from any thread.
    static std::optional<std::int64_t> numberHere(const ProcessIdentity &process);

    /// What the process was started with, as a folder like /proc tells.
    static QByteArrayList environment(std::int64_t process, const QString &folder);

private:
    Task whenFoundHasEnded(const ProcessIdentity &process, std::function<void()> ended);

    Scheduler &m_scheduler;
    BackgroundPool &m_background;
};

} // namespace morvane
