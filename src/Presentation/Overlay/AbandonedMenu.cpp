#include "Presentation/Overlay/AbandonedMenu.h"

#include "Platform/Scheduler.h"

#include <QEvent>

namespace morvane {

namespace {

/// Long enough for the pointer to cut a corner outside the menu.
constexpr Seconds patience(1);

} // namespace

AbandonedMenu::AbandonedMenu(QMenu &menu, QWidget &origin, Scheduler &scheduler)
    : m_menu(menu), m_scheduler(scheduler) {
    m_menu.installEventFilter(this);
    origin.installEventFilter(this);
    for (auto *submenu : m_menu.findChildren<QMenu *>()) {
        submenu->installEventFilter(this);
    }
}

bool AbandonedMenu::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Leave:
        m_closing = m_scheduler.after(patience, [this] { m_menu.close(); });
        break;
    case QEvent::Enter:
    case QEvent::MouseMove:
    case QEvent::KeyPress:
        m_closing.cancel();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace morvane

#include "moc_AbandonedMenu.cpp"
