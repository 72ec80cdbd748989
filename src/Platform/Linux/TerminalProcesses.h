#pragma once

#include "Platform/Processes.h"
#include "Platform/Time.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

struct stat;

namespace morvane {

/// The processes behind a terminal device. A plain value.
struct TerminalProcesses {
    struct Process {
        qint64 id = 0;
        QByteArray name; ///< as the kernel keeps it, cut to 15 bytes

        friend bool operator==(const Process &, const Process &) = default;
    };
    /// From the shell (or whatever leads the terminal's session) up to the one that the system's
    /// first process has started. If any process has the terminal's window, it is one of these.
    QList<Process> ancestors;

    /// The environment that the shell was started with, each entry as NAME=VALUE. May be out of
    /// date, or inherited from an outer terminal.
    QList<QByteArray> environment;

    /// When the terminal was opened: the device's time by the clock of then, or the shell's start
    /// by the clock of now, whichever is earlier. The clock may have been set since, and some
    /// programs touch devices.
    Date openedAt = {};

    /// The value of a variable in `environment`; empty if it isn't set.
    QString variable(const QByteArray &name) const;

    /// For a terminal such as "/dev/pts/3". `resident` is a process that runs in the terminal in
    /// question. Empty if the path is no terminal or has no session, and if `resident` runs in a
    /// container's terminal of the same name, or where it can't be seen. Reads many small files;
    /// safe from any thread.
    static TerminalProcesses of(const QString &tty,
                                const std::optional<ProcessIdentity> &resident = {});

    /// The same for a device, with the processes in a folder like /proc and the resident's number
    /// there, 0 if none is known.
    static TerminalProcesses of(const struct stat &device, const QString &folder,
                                qint64 resident = 0);
};

} // namespace morvane
