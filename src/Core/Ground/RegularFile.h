#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Reads a bounded part, or all, of a file that somebody else writes, and only of a regular one: a
/// pipe or a device in its place is refused at once instead of waited for. Stateless; safe from any
/// thread.
namespace morvane::RegularFile {

/// Its content. Fails with the system's reason when it can't be read or is longer than 32 MiB.
Result<QByteArray> whole(const QString &path);

/// Up to `limit` bytes from the beginning. None when the file can't be read.
std::optional<QByteArray> head(const QString &path, qsizetype limit);

/// The last bytes, up to `limit`, counted from the end that the file has when it is opened. Of a
/// file that is truncated meanwhile, what is left of them; none when it can't be read.
std::optional<QByteArray> tail(const QString &path, qsizetype limit);

} // namespace morvane::RegularFile
