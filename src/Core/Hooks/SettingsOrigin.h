#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace morvane {

/// What stood in the place of a settings file before our first write: a copy beside it, whatever
/// else is written there, until it has come back. Where there was no file a mark says so, where we
/// have made it, and which folders had to be made. Synchronous; any thread, but no two on one file.
class SettingsOrigin {
public:
    explicit SettingsOrigin(const QString &path) : m_path(path) {}

    /// What a copy beside a settings file holds. None for a link: we have never made one, so it
    /// leads to somebody else's.
    static std::optional<QByteArray> ownContent(const QString &path);

    struct Content {
        /// None where there was no file.
        std::optional<QByteArray> bytes;
    };

    /// None where nothing is known.
    std::optional<Content> read() const;

    /// Keeps what is there now, in place of what was kept. Makes the folders of a file that isn't
    /// there yet.
    Result<void> keep(const std::optional<QByteArray> &bytes) const;

    /// What was kept has come back. The folders that were made for the file go where nothing else
    /// has come into them.
    void forget() const;

    QString copyPath() const { return m_path + QLatin1String(".morvane-original"); }

private:
    std::optional<QString> madeFolder() const;
    QString markPath() const { return m_path + QLatin1String(".morvane-created"); }

    QString m_path;
};

} // namespace morvane
