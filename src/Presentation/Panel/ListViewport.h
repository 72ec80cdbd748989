#pragma once

#include "Presentation/Style/WheelDistance.h"

#include <QWidget>

#include <optional>

namespace morvane {

class EdgeFade;
class RowList;
class Scheduler;

/// Shows as much of a taller list as fits, and scrolls it with the wheel. In place of scroll bars
/// the list fades out where it continues. It is laid out at once when its content or the viewport
/// changes, not on a later turn of the event loop, so that a frame never shows half of a change.
class ListViewport : public QWidget {
    Q_OBJECT

public:
    ListViewport(Scheduler &scheduler, QWidget *parent);

    RowList &rows() const { return *m_rows; }

    /// The height of the whole list at this width; it may be an estimate if the list is taller than
    /// the limit.
    int contentHeight(int width, int limit);

    /// Lays the list out anew.
    void refresh();

    /// The part in which the list is legible, without the darker half of the fades at its edges.
    QRect legibleRect() const;

    void scroll(QWheelEvent &event);
    void scrollToTop();

    /// Scrolls by nearly as much as is in sight, downwards for positive pages.
    void scrollByPage(int pages);

    /// Scrolls no further than it must to bring a widget of the list into sight, with the whole of
    /// its row if there is room for that.
    void reveal(const QWidget &widget);

signals:
    /// Something in the list has changed its size by itself.
    void contentResized();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override { scroll(*event); }

private:
    void heightsChanged();
    void layOut(std::optional<qsizetype> anchor);
    void scrollTo(int offset);

    RowList *m_rows;
    EdgeFade *m_topFade;
    EdgeFade *m_bottomFade;
    WheelDistance m_wheel;
    int m_offset = 0; ///< how far the list is scrolled up
    int m_whole = 0;  ///< the height of the list
};

} // namespace morvane
