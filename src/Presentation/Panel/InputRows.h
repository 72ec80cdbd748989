#pragma once

#include "Core/Agents/ReadableInput.h"

#include <QFont>
#include <QHash>
#include <QList>

#include <optional>

namespace morvane {

/// How the lines of an input break into rows: in a grid as terminals have it, where each character
/// takes whole columns; prose at its words. Measures with the font, and keeps what that has told.
class InputRows {
public:
    using Line = ReadableInput::Line;

    /// What of a line fits the width.
    struct Row {
        qsizetype line = 0;
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    explicit InputRows(const QFont &font);

    void setLines(const QList<Line> &lines);
    const QList<Line> &lines() const { return m_lines; }

    /// In rows of this width, in points.
    const QList<Row> &at(int width) const;

    double columnWidth() const { return m_columnWidth; } ///< in points

    /// How many units at the beginning of a text take one cell: a character with what stands on it.
    static qsizetype cellLength(QStringView text);

    /// How many columns such a cell takes.
    qsizetype columnsOf(const QString &cell) const;

private:
    void appendCells(qsizetype line, qsizetype columns) const;
    void appendWords(qsizetype line, int width) const;

    QFont m_font;
    double m_columnWidth;
    QList<Line> m_lines;
    mutable QHash<QString, qsizetype> m_columns; ///< what measuring has told, which is dear
    mutable QList<Row> m_rows;
    mutable std::optional<int> m_width; ///< that they were broken at; none: they have to be anew
};

} // namespace morvane
