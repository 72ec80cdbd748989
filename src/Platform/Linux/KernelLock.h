#pragma once

#include "Platform/Descriptor.h"

#include <QByteArray>
#include <QString>

namespace morvane {

/// A lock on a file, which the kernel releases when the process is gone, however it ended. It
/// doesn't matter who created the file; its content says which machine has the lock. Owned by
/// whoever needs the lock.
class KernelLock {
public:
    enum class Outcome {
        taken,
        heldByAnother,
        heldElsewhere, ///< by another machine that shares the folder
        impossible,    ///< the file can't be made or opened, or its file system has no locks
    };

    /// Doesn't wait. A lock that is already held stays held.
    [[nodiscard]] Outcome take(const QString &path);

    /// Removes the lock's file. The lock stays held, but later processes don't see it.
    void removeFile();

private:
    QByteArray m_name; ///< the file's
    Descriptor m_descriptor;
};

} // namespace morvane
