#pragma once

#include <QWidget>

namespace morvane {

class RowList;

/// The order in which the keyboard focus moves through a list and the footer below it: row by row,
/// and in each the row itself before the controls in it. Made for one step.
class FocusOrder {
public:
    enum class Direction { back = -1, forward = 1 };

    FocusOrder(const RowList &rows, const QWidget &footer);

    /// Moves the focus to the next stop, or leaves it at either end; false if there are no stops.
    bool move(Direction direction) const;

    /// Moves the focus to the first stop of the next line.
    void moveToLine(Direction direction) const;

    /// Moves the focus to the next stop of the same line.
    void moveInLine(Direction direction) const;

private:
    void append(const QWidget &parent);
    qsizetype current() const;
    int height(const QWidget &widget, const QPoint &point) const;
    int lineHeight(qsizetype stop) const;
    bool isSameLine(qsizetype stop, qsizetype other) const;

    const RowList &m_rows;
    const QWidget &m_footer;
    QWidgetList m_stops;
};

} // namespace morvane
