#pragma once

#include "Presentation/KeyablePanel.h"

#include <QMenu>
#include <QPointer>

namespace morvane {

class CompactView;
class ExpandedView;
struct PanelContext;

/// The black tab that hangs from the top of the screen, with the closed or the open view in it.
///
/// The widget may be larger than the tab, which grows and shrinks inside of it: a window that
/// changed its size with every frame would flicker. The owner places the tab.
class FloatingCapsuleView : public KeyablePanel {
    Q_OBJECT

public:
    explicit FloatingCapsuleView(const PanelContext &context);

    void setContentHeightBudget(int budget);
    void setExpanded(bool expanded);

    /// Takes over what the store has now.
    void refresh();

    /// The size that the view on show needs.
    QSize fittingSize() const;

    /// Where the tab is at this moment, and where it is on its way to; both in points of the
    /// widget. The content already stands where it will be in the end.
    void setTab(const QRect &present, const QRect &target);

    /// Opens a menu at a point of the desktop. It takes the keyboard for as long as it is open, and
    /// the focus stays where it is.
    void open(QMenu &menu, const QPoint &position);

    /// The menu that is open on the capsule, or none.
    QMenu *openMenu() const { return m_openMenu; }

    /// What a tab of this place covers.
    QRegion shape(const QRect &tab) const;

signals:
    /// The pointer has entered or left the widget's visible part.
    void pointerCrossed();
    /// A right click, anywhere on the widget, at this point of the desktop.
    void contextMenuRequested(const QPoint &position);
    void menuClosed();
    /// The view on show needs another size.
    void contentResized();

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    double cornerRadius() const;

    bool m_isExpanded = false;
    QRect m_tab;
    QWidget *m_clip; ///< cuts the content off at the tab's edges while the tab moves
    CompactView *m_compact;
    ExpandedView *m_expanded;
    QPointer<QMenu> m_openMenu;
};

} // namespace morvane
