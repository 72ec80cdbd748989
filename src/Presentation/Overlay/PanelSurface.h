#pragma once

#include "Core/Sessions/CompletedRecord.h"
#include "Presentation/Overlay/KeyablePanel.h"
#include "Presentation/Style/KeyStroke.h"

#include <QMenu>
#include <QPointer>

#include <optional>

namespace morvane {

class Announcement;
class Scheduler;

/// The base of all presenters' widgets, whatever they look like: it reports when the pointer enters
/// or leaves, and can have a menu open on it.
class PanelSurface : public KeyablePanel {
    Q_OBJECT

public:
    explicit PanelSurface(Scheduler &scheduler);

    /// Has a screen reader say `text`.
    void announce(const QString &text);

    /// Opens a menu at a point of the desktop. The menu takes the keyboard while it is open, and
    /// the focus stays where it is.
    void open(QMenu &menu, const QPoint &position);

    /// Puts the focus into the panel, which is open.
    virtual void takeFocus() = 0;

    // Answered by the panel on the surface; false and none while it is closed.
    virtual bool hasBeenRead(const QString &sessionID) const = 0;
    virtual std::optional<CompletedRecord> recordAt(int digit) const = 0;

    /// The menu that is open on the surface, or none.
    QMenu *openMenu() const { return m_openMenu; }

signals:
    /// The pointer has entered or left the widget's visible part.
    void pointerCrossed();
    /// A screen reader asks to open the panel.
    void openRequested();
    /// A right click, anywhere on the widget, at this point of the desktop.
    void contextMenuRequested(const QPoint &position);
    void menuClosed();
    /// A key has gone down, wherever in the panel the focus is.
    void keyUsed();
    /// Esc was pressed and let go, and nothing in the panel has used it.
    void escaped();
    /// What is shown needs another size.
    void contentResized();

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void letGo();
    bool isRepetition(const QKeyEvent &press);

    QPointer<QMenu> m_openMenu;
    Announcement *m_announcement;
    KeyStroke m_escape;
    int m_heldKey = 0; ///< has pressed or ended something and is still down; 0 if none
};

} // namespace morvane
