#pragma once

#include "Core/Agents/ReadableInput.h"

#include <QFont>
#include <QHash>
#include <QList>

#include <optional>

namespace morvane {

/// Breaks the lines of an input into rows: on a grid, as terminals do, where each character takes
/// whole columns; prose between words. Measures with the font, and caches the results.
class InputRows {
public:
    using Line = ReadableInput::Line;

    /// The part of a line that fits the width.
    struct Row {
        qsizetype line = 0;
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    explicit InputRows(const QFont &font);

    void setLines(const QList<Line> &lines);
    const QList<Line> &lines() const { return m_lines; }

    /// The rows at this width, in points.
    const QList<Row> &at(int width) const;

    double columnWidth() const { return m_columnWidth; } ///< in points

    /// How many code units the first cell of a text takes: a character with its combining marks.
    static qsizetype cellLength(QStringView text);

    /// How many columns such a cell takes.
    qsizetype columnsOf(const QString &cell) const;

private:
    void appendCells(qsizetype line, qsizetype columns) const;
    void appendWords(qsizetype line, int width) const;

    QFont m_font;
    double m_columnWidth;
    QList<Line> m_lines;
    mutable QHash<QString, qsizetype> m_columns; ///< a cache: measuring is expensive
    mutable QList<Row> m_rows;
    mutable std::optional<int> m_width; ///< at which `m_rows` were broken; none if outdated
};

} // namespace morvane
