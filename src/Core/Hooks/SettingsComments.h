#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace morvane {

/// The comments that a person has written in a settings file in JSON or TOML. Once our rewrites or
/// an agent's have dropped them, a copy beside the file may be the last to hold them. Before such a
/// copy is overwritten, it is appended to a separate file there, from which nothing is ever
/// removed. Synchronous; any thread, but no two on one file.
class SettingsComments {
public:
    /// The extension of the settings file says how comments are written in it.
    explicit SettingsComments(const QString &settingsPath) : m_settingsPath(settingsPath) {}

    /// To be called before the copy is overwritten. Does nothing where each of its comments is in
    /// one of the texts that stay, or has been saved before.
    Result<void> rescue(const QString &copyPath, const QByteArrayList &staying) const;

private:
    QByteArrayList commentsIn(const QByteArray &text) const;

    QString m_settingsPath;
};

} // namespace morvane
