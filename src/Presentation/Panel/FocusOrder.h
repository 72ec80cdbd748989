#pragma once

#include <QWidget>

namespace morvane {

class RowList;

/// In which order the keys go through what can be pressed in a list and the footer below it: from
/// row to row, and in each from the row itself through what stands in it. Made for one step.
class FocusOrder {
public:
    enum class Direction { back = -1, forward = 1 };

    FocusOrder(const RowList &rows, const QWidget &footer);

    /// Moves the focus to the next; false when there is none.
    bool move(Direction direction) const;

    /// Moves it to the first of the next line.
    void moveToLine(Direction direction) const;

    /// Moves it to the next in the same line.
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
