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

/// What the widgets of all presenters have in common, whatever they look like: they tell when the
/// pointer crosses them, and a menu can be open on them.
class PanelSurface : public KeyablePanel {
    Q_OBJECT

public:
    explicit PanelSurface(Scheduler &scheduler);

    /// To a screen reader.
    void announce(const QString &text);

    /// Opens a menu at a point of the desktop. It takes the keyboard for as long as it is open, and
    /// the focus stays where it is.
    void open(QMenu &menu, const QPoint &position);

    /// Lets the keys begin in the panel, which is open.
    virtual void takeFocus() = 0;

    // As the panel on the surface says; nothing while that is closed.
    virtual bool hasBeenRead(const QString &sessionID) const = 0;
    virtual std::optional<CompletedRecord> recordAt(int digit) const = 0;

    /// The menu that is open on the surface, or none.
    QMenu *openMenu() const { return m_openMenu; }

signals:
    /// The pointer has entered or left the widget's visible part.
    void pointerCrossed();
    /// A screen reader wants it open.
    void openRequested();
    /// A right click, anywhere on the widget, at this point of the desktop.
    void contextMenuRequested(const QPoint &position);
    void menuClosed();
    /// A key has gone down, wherever in the panel the focus is.
    void keyUsed();
    /// Esc, which nothing in the panel has a use for.
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
    int m_heldKey = 0; ///< that has pressed or ended something, and hasn't been let go yet
};

} // namespace morvane
