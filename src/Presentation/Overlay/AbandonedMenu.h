#pragma once

#include "Platform/Task.h"

#include <QMenu>
#include <QObject>

namespace morvane {

class Scheduler;

/// Closes an open menu a moment after the pointer has left it, its submenus and the widget it was
/// opened on, unless a key is pressed in it. For desktops where a menu isn't told of clicks on
/// other programs' windows, and would stay open. Lives for as long as the menu is open; main
/// thread.
class AbandonedMenu : public QObject {
    Q_OBJECT

public:
    /// All three outlive it.
    AbandonedMenu(QMenu &menu, QWidget &origin, Scheduler &scheduler);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenu &m_menu;
    Scheduler &m_scheduler;
    Task m_closing;
};

} // namespace morvane
