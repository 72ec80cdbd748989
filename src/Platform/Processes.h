#pragma once

#include "Platform/Task.h"

#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <optional>
#include <tuple>

namespace morvane {

/// A process of this machine.
struct ProcessIdentity {
    std::int64_t id = 0;
    /// When it started, in clock ticks since boot, as in /proc/ID/stat. Tells it apart from a later
    /// process with the same number.
    std::uint64_t startedAt = 0;
    /// The PID namespace of the number: the inode of /proc/ID/ns/pid.
    std::uint64_t pidNamespace = 0;

    friend bool operator==(const ProcessIdentity &, const ProcessIdentity &) = default;
    friend bool operator<(const ProcessIdentity &left, const ProcessIdentity &right) {
        return std::tie(left.id, left.startedAt, left.pidNamespace) <
               std::tie(right.id, right.startedAt, right.pidNamespace);
    }
};

/// What runs on this machine.
class Processes {
public:
    Processes() = default;
    Processes(const Processes &) = delete;
    Processes &operator=(const Processes &) = delete;
    virtual ~Processes() = default;

    /// Calls `ended` once, on the main thread and after this call has returned, when the process
    /// has ended or if it already has. Never calls it where the machine can't tell, as for a
    /// process in another PID namespace, such as a sandbox's, that couldn't be found at the time of
    /// this call. Main thread.
    virtual Task whenEnded(const ProcessIdentity &process, std::function<void()> ended) = 0;

    /// The working directory of each process of this user that runs a program of this name,
    /// natively or as an interpreted script; processes that such a script has started are left out.
    /// None if the machine doesn't tell, or doesn't tell all of them. Reads many small files; safe
    /// from any thread.
    virtual std::optional<QStringList> workingDirectories(const QString &program) const = 0;

    /// The number of this user's process that listens at this local socket, 0 where the machine
    /// doesn't tell the number; none when no process listens. Doesn't wait for the process; safe
    /// from any thread.
    virtual std::optional<std::int64_t> listenerAt(const QString &socket) const = 0;

    /// Whether the process receives what is typed into its terminal, whichever process leads the
    /// foreground group there: true if it belongs to that group, false while it is stopped. None
    /// where that can't be told, as for a process that works for another one, and for the leader
    /// itself, whose name the terminal tells. Reads small files of the kernel's; safe from any
    /// thread.
    virtual std::optional<bool> hearsKeys(const ProcessIdentity &process) const = 0;

    /// The process that has opened the terminal of this process: the parent of its session leader.
    /// None where the machine doesn't tell, as for a process without a terminal. Reads small files
    /// of the kernel's; safe from any thread.
    virtual std::optional<std::int64_t> terminalOpener(const ProcessIdentity &process) const = 0;

    /// None for a process that isn't there, or where the machine doesn't tell. Reads small files of
    /// the kernel's; safe from any thread.
    virtual std::optional<ProcessIdentity> identityOf(std::int64_t id) const = 0;

    /// The environment that the process of this number was started with, each entry as NAME=VALUE;
    /// empty where the machine doesn't tell. Reads a file of the kernel's, 256 KiB at most; safe
    /// from any thread.
    virtual QByteArrayList environment(std::int64_t process) const = 0;

    /// Our path of the file that the process knows by this absolute path, with all links resolved
    /// except the one to the process's root: if it has its own mounts, as in a container, the
    /// result begins with that root. A process that has ended is taken to have had our files. Empty
    /// if there is no such file, or if the process can't be seen, as in another user's container.
    /// Searches all processes if this one is in another PID namespace; safe from any thread.
    virtual QString fileOf(const ProcessIdentity &process, const QString &path) const = 0;
};

/// For a machine that tells nothing about its processes.
class NullProcesses final : public Processes {
public:
    Task whenEnded(const ProcessIdentity &, std::function<void()>) override { return {}; }
    std::optional<QStringList> workingDirectories(const QString &) const override {
        return std::nullopt;
    }
    std::optional<std::int64_t> listenerAt(const QString &) const override { return std::nullopt; }
    std::optional<bool> hearsKeys(const ProcessIdentity &) const override { return std::nullopt; }
    std::optional<std::int64_t> terminalOpener(const ProcessIdentity &) const override {
        return std::nullopt;
    }
    std::optional<ProcessIdentity> identityOf(std::int64_t) const override { return std::nullopt; }
    QByteArrayList environment(std::int64_t) const override { return {}; }
    QString fileOf(const ProcessIdentity &, const QString &) const override { return {}; }
};

} // namespace morvane
