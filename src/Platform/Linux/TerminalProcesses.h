#pragma once

#include "Platform/Processes.h"
#include "Platform/Time.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

struct stat;

namespace morvane {

/// Who stands behind a terminal device. A plain value.
struct TerminalProcesses {
    struct Process {
        qint64 id = 0;
        QByteArray name; ///< as the kernel keeps it, cut to 15 bytes

        friend bool operator==(const Process &, const Process &) = default;
    };
    /// From the shell (or what else leads the terminal's session) to the one that the system has
    /// started; one of them has the window, if any has. Without the first process of the system.
    QList<Process> ancestors;

    /// What the shell was started with, each as NAME=VALUE. May be out of date, or of another
    /// terminal further out.
    QList<QByteArray> environment;

    /// When the terminal was opened. By its device, as the clock was set then, or by the shell, as
    /// it is set now, whichever is earlier: the clock may be set, and some programs touch devices.
    Date openedAt = {};

    /// The value of a variable of that; empty where it isn't set.
    QString variable(const QByteArray &name) const;

    /// Of a terminal such as "/dev/pts/3"; empty for what is none, or is nobody's, and where
    /// `resident`, a process that runs in the terminal which is meant, has a container's of the
    /// same name, or runs where it can't be seen. Reads many small files; safe from any thread.
    static TerminalProcesses of(const QString &tty,
                                const std::optional<ProcessIdentity> &resident = {});

    /// The same for the device, as a folder like /proc shows the processes, with the number that
    /// the resident has there; 0 where none is known.
    static TerminalProcesses of(const struct stat &device, const QString &folder,
                                qint64 resident = 0);
};

} // namespace morvane
