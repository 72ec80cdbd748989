#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace morvane {

/// A process's fields from /proc/ID/stat. A plain value.
struct ProcessStatus {
    std::int64_t id = 0;
    QByteArray name; ///< as the kernel keeps it, cut to 15 bytes
    QByteArray state;
    std::int64_t parent = 0;
    std::int64_t group = 0;
    std::int64_t session = 0;
    std::int64_t terminal = 0;        ///< its device's number; 0 where there is none
    std::int64_t foregroundGroup = 0; ///< of that terminal
    std::uint64_t startedAt = 0;      ///< in clock ticks since boot

    /// None for a process that isn't there. `folder` is one like /proc.
    static std::optional<ProcessStatus> of(std::int64_t id,
                                           const QString &folder = QStringLiteral("/proc"));
};

} // namespace morvane
