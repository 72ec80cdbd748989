#pragma once

#include <QFile>

namespace morvane {

/// Whether a process has ended. Whoever is to take its status may take his time.
inline bool isGone(qint64 id) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(id));
    return !file.open(QIODevice::ReadOnly) || file.readAll().contains(") Z ");
}

} // namespace morvane
