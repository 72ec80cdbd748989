#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files in the desktop entry format of freedesktop.org.
namespace morvane::DesktopEntry {

/// What the main group of a file has for a key; none when there is no such file or key. Values in
/// other languages have keys of their own.
std::optional<QString> value(const QString &path, QLatin1String key);

/// A program without arguments as the value of "Exec", whatever its path is made of.
QByteArray execValue(const QString &program);

} // namespace morvane::DesktopEntry
