#include "Presentation/Overlay/PanelSurface.h"

#include "Presentation/Overlay/AccessibleCapsule.h"
#include "Presentation/Overlay/Announcement.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWindow>

namespace morvane {

PanelSurface::PanelSurface(Scheduler &scheduler)
    : m_announcement(new Announcement(scheduler, this)) {
    AccessibleCapsule::install();
    // The window is never the active one, and Qt shows help texts in no other unless told to.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAccessibleName(QStringLiteral("Morvane"));
}

void PanelSurface::announce(const QString &text) {
    m_announcement->say(text);
}

void PanelSurface::open(QMenu &menu, const QPoint &position) {
    m_openMenu = &menu;
    connect(
        &menu, &QMenu::aboutToHide, this,
        [this] {
            m_openMenu.clear();
            emit menuClosed();
        },
        Qt::SingleShotConnection);
    menu.popup(position);
}

void PanelSurface::enterEvent(QEnterEvent *event) {
    QWidget::enterEvent(event);
    emit pointerCrossed();
}

void PanelSurface::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    emit pointerCrossed();
}

/// All keys come by way of the window.
void PanelSurface::showEvent(QShowEvent *event) {
    KeyablePanel::showEvent(event);
    windowHandle()->installEventFilter(this);
}

bool PanelSurface::eventFilter(QObject *watched, QEvent *event) {
    if (watched == windowHandle() && event->type() == QEvent::KeyPress) {
        emit keyUsed();
    }
    return KeyablePanel::eventFilter(watched, event);
}

void PanelSurface::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        emit escaped();
    } else {
        KeyablePanel::keyPressEvent(event);
    }
}

void PanelSurface::contextMenuEvent(QContextMenuEvent *event) {
    emit contextMenuRequested(event->globalPos());
}

} // namespace morvane

#include "moc_PanelSurface.cpp"
