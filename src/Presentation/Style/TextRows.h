#pragma once

#include <QFont>
#include <QList>
#include <QString>

namespace morvane {

/// What of a text stands in one row.
struct TextRow {
    qsizetype begin = 0;
    qsizetype length = 0;
};

/// Breaks a text at its words, inside of one where it has to, into rows of this width in points.
/// Of more rows than `most` the rest is left out; 0 is without a limit.
QList<TextRow> textRows(const QString &text, const QFont &font, int width, qsizetype most = 0);

} // namespace morvane
