#include "Presentation/Panel/FocusOrder.h"

#include "Presentation/Panel/ListRow.h"
#include "Presentation/Panel/RowList.h"

#include <QApplication>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace morvane {

namespace {

constexpr int lineTolerance = 3; ///< in points, between the vertical middles of stops in one line

bool isStop(const QWidget &widget, const QWidget &parent) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isVisibleTo(&parent) &&
           widget.isEnabled();
}

} // namespace

FocusOrder::FocusOrder(const RowList &rows, const QWidget &footer)
    : m_rows(rows), m_footer(footer) {
    for (QWidget *row : rows.inOrder()) {
        if (qobject_cast<ListRow *>(row) != nullptr) {
            m_stops.append(row);
            append(*row);
        }
    }
    append(footer);
}

/// Appends the stops in a widget, from top to bottom and from left to right.
void FocusOrder::append(const QWidget &parent) {
    QWidgetList inner = parent.findChildren<QWidget *>();
    inner.removeIf([&](const QWidget *widget) { return !isStop(*widget, parent); });
    std::ranges::stable_sort(inner, {}, [&](const QWidget *widget) {
        const QPoint place = widget->mapTo(&parent, QPoint());
        return std::pair(place.y(), place.x());
    });
    m_stops.append(inner);
}

/// A focus widget in the list that has just ceased to be a stop still counts by its position.
qsizetype FocusOrder::current() const {
    const QWidget *focus = QApplication::focusWidget();
    const qsizetype known = m_stops.indexOf(focus);
    if (known >= 0 || !m_rows.isAncestorOf(focus)) {
        return known;
    }
    const int place = height(*focus, {});
    const auto behind = std::ranges::find_if(
        m_stops, [&](const QWidget *stop) { return height(*stop, {}) >= place; });
    return behind - m_stops.begin() - 1;
}

bool FocusOrder::move(Direction direction) const {
    const qsizetype next = current() + static_cast<int>(direction);
    if (m_stops.isEmpty()) {
        return false;
    }
    m_stops[std::clamp<qsizetype>(next, 0, m_stops.size() - 1)]->setFocus(Qt::TabFocusReason);
    return true;
}

void FocusOrder::moveToLine(Direction direction) const {
    const int step = static_cast<int>(direction);
    const qsizetype from = current();
    qsizetype next = from + step;
    while (from >= 0 && next >= 0 && next < m_stops.size() && isSameLine(next, from)) {
        next += step;
    }
    if (next < 0 || next >= m_stops.size()) {
        return;
    }
    while (next > 0 && isSameLine(next - 1, next)) {
        --next;
    }
    m_stops[next]->setFocus(Qt::TabFocusReason);
}

void FocusOrder::moveInLine(Direction direction) const {
    const qsizetype from = current();
    const qsizetype next = from + static_cast<int>(direction);
    if (from >= 0 && next >= 0 && next < m_stops.size() && isSameLine(next, from)) {
        m_stops[next]->setFocus(Qt::TabFocusReason);
    }
}

/// The vertical position, as if the whole list were in sight above the footer.
int FocusOrder::height(const QWidget &widget, const QPoint &point) const {
    return m_rows.isAncestorOf(&widget) ? widget.mapTo(&m_rows, point).y()
                                        : m_rows.height() + widget.mapTo(&m_footer, point).y();
}

int FocusOrder::lineHeight(qsizetype stop) const {
    const QWidget &widget = *m_stops[stop];
    const auto *row = qobject_cast<const ListRow *>(&widget);
    return height(widget, row != nullptr ? row->firstLine() : widget.rect().center());
}

bool FocusOrder::isSameLine(qsizetype stop, qsizetype other) const {
    return std::abs(lineHeight(stop) - lineHeight(other)) <= lineTolerance;
}

} // namespace morvane
