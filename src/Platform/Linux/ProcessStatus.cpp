#include "Platform/Linux/ProcessStatus.h"

#include <QFile>

namespace morvane {

/// The name stands in parentheses and may itself hold blanks and parentheses, so the fields behind
/// it are counted from the last parenthesis.
std::optional<ProcessStatus> ProcessStatus::of(std::int64_t id, const QString &folder) {
    QFile file(QStringLiteral("%1/%2/stat").arg(folder).arg(id));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
    const qsizetype start = text.indexOf('(');
    const qsizetype end = text.lastIndexOf(')');
    const QList<QByteArray> fields = text.mid(end + 2).split(' ');
    if (start < 0 || end < start || fields.size() < 20) {
        return std::nullopt;
    }
    return ProcessStatus{id,
                         text.mid(start + 1, end - start - 1),
                         fields[0],
                         fields[1].toLongLong(),
                         fields[2].toLongLong(),
                         fields[3].toLongLong(),
                         fields[4].toLongLong(),
                         fields[5].toLongLong(),
                         fields[19].toULongLong()};
}

} // namespace morvane
