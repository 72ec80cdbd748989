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
    /// Tells it from a later one of the same number: clock ticks since the machine has started, as
    /// /proc/ID/stat says.
    std::uint64_t startedAt = 0;
    /// In which the number holds: the inode of /proc/ID/ns/pid.
    std::uint64_t numberSpace = 0;

    friend bool operator==(const ProcessIdentity &, const ProcessIdentity &) = default;
    friend bool operator<(const ProcessIdentity &left, const ProcessIdentity &right) {
        return std::tie(left.id, left.startedAt, left.numberSpace) <
               std::tie(right.id, right.startedAt, right.numberSpace);
    }
};

/// What runs on this machine.
class Processes {
public:
    Processes() = default;
    Processes(const Processes &) = delete;
    Processes &operator=(const Processes &) = delete;
    virtual ~Processes() = default;

    /// Calls `ended` once, on the main thread and never before this has returned, when the process
    /// has ended or if it has already. Never, where the machine doesn't tell: also of a process in
    /// a number space of its own, such as a sandbox's, that couldn't be found when this was called.
    /// Main thread.
    virtual Task whenEnded(const ProcessIdentity &process, std::function<void()> ended) = 0;

    /// The working directory of each process of this user that runs a program of this name, or
    /// interprets it as a script; without those that such a process has started itself. None where
    /// the machine doesn't tell, or not of all of them. Reads many small files; safe from any
    /// thread.
    virtual std::optional<QStringList> workingDirectories(const QString &program) const = 0;

    /// The number of the process of this user that takes connections at this local socket, 0 where
    /// the machine doesn't tell the number; none when nobody does. Doesn't wait for the process;
    /// safe from any thread.
    virtual std::optional<std::int64_t> listenerAt(const QString &socket) const = 0;

    /// Whether the process hears what is typed into its terminal, whoever leads the foreground
    /// there: true while it belongs to that, false while it is stopped; none where the machine
    /// doesn't tell, as of a process that works for another one, and of the leader itself, whose
    /// name the terminal tells. Reads small files of the kernel's; safe from any thread.
    virtual std::optional<bool> hearsKeys(const ProcessIdentity &process) const = 0;

    /// The process that has opened the terminal in which this one runs: the parent of whatever
    /// leads its session. None where the machine doesn't tell, as of a process without a terminal.
    /// Reads small files of the kernel's; safe from any thread.
    virtual std::optional<std::int64_t> terminalOpener(const ProcessIdentity &process) const = 0;

    /// None for a process that isn't there, or where the machine doesn't tell. Reads small files of
    /// the kernel's; safe from any thread.
    virtual std::optional<ProcessIdentity> identityOf(std::int64_t id) const = 0;

    /// What the process of this number was started with, each as NAME=VALUE; nothing where the
    /// machine doesn't tell. Reads a file of the kernel's, 256 KiB at most; safe from any thread.
    virtual QByteArrayList environment(std::int64_t process) const = 0;

    /// Where we find the file that the process knows by this absolute path, with no link left to
    /// follow but one to its root: where it has mounts of its own, as in a container, the path
    /// leads below that. A process that has ended counts as one that had our files. Empty where
    /// there is no such file, or where that process can't be seen, as in a container of another
    /// user's. Looks at every process where that one has a number space of its own; safe from any
    /// thread.
    virtual QString fileOf(const ProcessIdentity &process, const QString &path) const = 0;
};

/// Those of a machine that doesn't tell.
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
