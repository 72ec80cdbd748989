#pragma once

#include "Platform/Descriptor.h"

#include <QByteArray>
#include <QString>

namespace morvane {

/// A lock on a file, which the kernel gives back when the process is gone, however it ended. Who
/// has made the file is of no matter; it comes to hold which machine has the lock. Owned by whoever
/// needs the lock.
class KernelLock {
public:
    enum class Outcome {
        taken,
        heldByAnother,
        heldElsewhere, ///< on another machine, which has the folder as well
        impossible,    ///< the file can't be made or opened, or its file system has no locks
    };

    /// Doesn't wait. A lock that was taken before stays so.
    [[nodiscard]] Outcome take(const QString &path);

    /// Of a lock that was taken, which stays so; whoever comes after that finds none.
    void removeFile();

private:
    QByteArray m_name; ///< of the file
    Descriptor m_descriptor;
};

} // namespace morvane
