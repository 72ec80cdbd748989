#pragma once

#include "Platform/ProgramFile.h"

#include <QFileSystemWatcher>
#include <QString>

#include <optional>
#include <sys/types.h>
#include <utility>

namespace morvane {

/// A program's file as the kernel tells of it: nothing is asked while nothing changes.
class WatchedProgramFile : public ProgramFile {
    Q_OBJECT

public:
    /// `path` is absolute, and where the program's file lies at this moment.
    explicit WatchedProgramFile(QString path);

    void look() override;

private:
    using Identity = std::pair<dev_t, ino_t>;

    static std::optional<Identity> identityOf(const QString &path);

    const QString m_path;
    const std::optional<Identity> m_identity;
    QFileSystemWatcher m_watcher;
};

} // namespace morvane
