#pragma once

#include "Platform/Descriptor.h"
#include "Platform/ProgramFile.h"

#include <QSocketNotifier>
#include <QString>

#include <optional>
#include <sys/types.h>
#include <utility>

namespace morvane {

/// Watches a program's file without polling. Uses inotify directly, since Qt's watcher takes 190 KB
/// for this one file.
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
    std::optional<QSocketNotifier> m_notifier; ///< for `m_changes`; none if the watch failed
};

} // namespace morvane
