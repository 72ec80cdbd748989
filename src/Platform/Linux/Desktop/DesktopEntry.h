#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// Files in the desktop entry format of freedesktop.org.
namespace morvane::DesktopEntry {

/// The file of the application whose entry has this id, without its ending; none where it isn't
/// installed.
std::optional<QString> pathOf(const QString &id);

/// What the main group of a file has for a key; none when there is no such file or key. Values in
/// other languages have keys of their own.
std::optional<QString> value(const QString &path, QLatin1String key);

/// A program without arguments as the value of "Exec", whatever its path is made of.
QByteArray execValue(const QString &program);

/// The program and its arguments that a value of "Exec" stands for, when there is nothing to open;
/// none where the value is malformed. Quotes are read as a shell reads them, beyond what the format
/// allows, since many entries count on it.
std::optional<QStringList> command(const QString &execValue);

} // namespace morvane::DesktopEntry
