#pragma once

#include <QFile>

namespace morvane {

/// Whether a process has ended, even if nobody has reaped it yet.
inline bool isGone(qint64 id) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(id));
    return !file.open(QIODevice::ReadOnly) || file.readAll().contains(") Z ");
}

} // namespace morvane
