#pragma once

#include <QWidget>

namespace morvane {

class EdgeFade;

/// Shows as much of a taller list as fits, and scrolls it with the wheel, without any bars: the
/// list fades out where it goes on. It is laid out at once when its content or the viewport
/// changes, not on a later turn of the event loop, so that a frame never shows half of a change.
class ListViewport : public QWidget {
    Q_OBJECT

public:
    explicit ListViewport(QWidget *parent);

    /// The list; its layout decides on the height.
    QWidget &content() const { return *m_content; }

    /// The height at which the list shows whole at this width.
    int contentHeight(int width) const;

    /// Lays the list out anew.
    void refresh();

    void scroll(QWheelEvent &event);

signals:
    /// Something in the list has changed its size by itself.
    void contentResized();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override { scroll(*event); }
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_content;
    EdgeFade *m_topFade;
    EdgeFade *m_bottomFade;
    int m_offset = 0; ///< how far the list is scrolled up
};

} // namespace morvane
