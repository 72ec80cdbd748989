#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// Files in the desktop entry format of freedesktop.org.
namespace morvane::DesktopEntry {

/// The file of the desktop entry with this id, given without ".desktop"; none if it isn't
/// installed.
std::optional<QString> pathOf(const QString &id);

/// The value of a key in the file's main group; none if there is no such file or key. Translated
/// values have keys of their own.
std::optional<QString> value(const QString &path, QLatin1String key);

/// The value of "Exec" for a program without arguments. Escapes any character in its path.
QByteArray execValue(const QString &program);

/// The program and arguments of an "Exec" value, with no files to open; none if the value is
/// malformed. Quotes are read as in a shell, which is more than the format allows, since many
/// entries count on it.
std::optional<QStringList> command(const QString &execValue);

} // namespace morvane::DesktopEntry
