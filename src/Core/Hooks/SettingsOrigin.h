#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace morvane {

/// What a settings file held before our first write: a copy beside it, which survives all later
/// writes until it is restored. Where there was no file, a marker file records where we made it,
/// and which folders had to be made. Synchronous; any thread, but no two on one file.
class SettingsOrigin {
public:
    explicit SettingsOrigin(const QString &path) : m_path(path) {}

    /// The content of a copy beside a settings file. None for a symbolic link: we never make one,
    /// so it leads to somebody else's file.
    static std::optional<QByteArray> ownContent(const QString &path);

    struct Content {
        /// None where there was no file.
        std::optional<QByteArray> bytes;
    };

    /// None where nothing is known.
    std::optional<Content> read() const;

    /// Keeps these bytes as the origin, in place of what was kept. None stands for a missing file,
    /// whose folders are then made.
    Result<void> keep(const std::optional<QByteArray> &bytes) const;

    /// To be called once the origin has been restored: drops it. Folders that were made for the
    /// file are removed where nothing else has come into them.
    void forget() const;

    QString copyPath() const { return m_path + QLatin1String(".morvane-original"); }

private:
    std::optional<QString> madeFolder() const;
    QString markPath() const { return m_path + QLatin1String(".morvane-created"); }

    QString m_path;
};

} // namespace morvane
