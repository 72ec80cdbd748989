#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace morvane {

/// What a person has written between the settings of a file in JSON or TOML. Where our rewrites, or
/// an agent's, have taken it out, a copy beside the file may be the last to hold it. Such a copy is
/// first added to a file of its own there, from which nothing is ever taken. Synchronous; any
/// thread, but no two on one file.
class SettingsComments {
public:
    /// The ending of the settings file says how comments are written in it.
    explicit SettingsComments(const QString &settingsPath) : m_settingsPath(settingsPath) {}

    /// To be called before the copy makes way for another. Nothing happens where each of its
    /// comments is in one of the texts that stay, or has been added before.
    Result<void> rescue(const QString &copyPath, const QByteArrayList &staying) const;

private:
    QByteArrayList commentsIn(const QByteArray &text) const;

    QString m_settingsPath;
};

} // namespace morvane
