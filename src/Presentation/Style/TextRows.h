#pragma once

#include <QFont>
#include <QList>
#include <QString>

namespace morvane {

/// The part of a text that stands in one row.
struct TextRow {
    qsizetype begin = 0;
    qsizetype length = 0;
};

/// Breaks a text between words, or within a word where it must, into rows of this width in points.
/// Rows beyond `most` are left out; 0 means no limit.
QList<TextRow> textRows(const QString &text, const QFont &font, int width, qsizetype most = 0);

} // namespace morvane
