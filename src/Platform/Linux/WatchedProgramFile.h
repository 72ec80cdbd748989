#pragma once

#include "Platform/Descriptor.h"
#include "Platform/ProgramFile.h"

#include <QSocketNotifier>
#include <QString>

#include <optional>
#include <sys/types.h>
#include <utility>

namespace morvane {

/// A program's file as the kernel tells of it: nothing is asked while nothing changes. By inotify
/// itself, since Qt's watcher takes 190 KB for this one file.
class WatchedProgramFile : public ProgramFile {
    Q_OBJECT

public:
    /// `path` is absolute, and where the program's file lies at this moment.
    explicit WatchedProgramFile(QString path);

    void look() override;

private:
    using Identity = std::pair<dev_t, ino_t>;

    static std::optional<Identity> identityOf(const QString &path);
    void hear();

    const QString m_path;
    const std::optional<Identity> m_identity;
    const Descriptor m_changes;
    std::optional<QSocketNotifier> m_notifier; ///< of them, where they are told
};

} // namespace morvane
