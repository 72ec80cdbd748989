#include "Presentation/Overlay/PanelSurface.h"

#include "Presentation/Overlay/AccessibleCapsule.h"
#include "Presentation/Overlay/Announcement.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWindow>

#include <utility>

namespace morvane {

PanelSurface::PanelSurface(Scheduler &scheduler)
    : m_announcement(new Announcement(scheduler, this)) {
    AccessibleCapsule::install();
    // The window is never active, and without this Qt shows tool tips only in active windows.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAccessibleName(QStringLiteral("Morvane"));
}

void PanelSurface::announce(const QString &text) {
    m_announcement->say(text);
}

void PanelSurface::open(QMenu &menu, const QPoint &position) {
    letGo();
    for (QAbstractButton *button : findChildren<QAbstractButton *>()) {
        button->setDown(false); // the menu gets the release of the key or pointer
    }
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

/// The filter sees every key, because keys reach the window before a widget.
void PanelSurface::showEvent(QShowEvent *event) {
    KeyablePanel::showEvent(event);
    windowHandle()->installEventFilter(this);
}

bool PanelSurface::eventFilter(QObject *watched, QEvent *event) {
    if (watched == windowHandle()) {
        switch (event->type()) {
        case QEvent::KeyPress:
            emit keyUsed();
            return isRepetition(*static_cast<QKeyEvent *>(event));
        case QEvent::KeyRelease:
            if (static_cast<QKeyEvent *>(event)->key() == m_heldKey) {
                m_heldKey = 0;
            }
            break;
        case QEvent::FocusOut:
            letGo();
            break;
        default:
            break;
        }
    }
    return KeyablePanel::eventFilter(watched, event);
}

/// Forgets the keys that are held in the panel, because their release goes elsewhere.
void PanelSurface::letGo() {
    m_heldKey = 0;
    m_escape.abandon();
}

/// A key that presses or ends something does so once, however long it is held, since the focus may
/// be elsewhere by the time it repeats. The held key is kept because X11 doesn't mark repeats as
/// such. Space counts only on buttons.
bool PanelSurface::isRepetition(const QKeyEvent &press) {
    const int key = press.key();
    const bool isSpace = key == Qt::Key_Space;
    if (!isSpace && key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape) {
        return false;
    }
    const bool isHeld = press.isAutoRepeat() || std::exchange(m_heldKey, key) == key;
    return isHeld &&
           (!isSpace || qobject_cast<QAbstractButton *>(QApplication::focusWidget()) != nullptr);
}

void PanelSurface::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape) {
        KeyablePanel::keyPressEvent(event);
    } else {
        m_escape.begin(*event);
    }
}

void PanelSurface::keyReleaseEvent(QKeyEvent *event) {
    KeyablePanel::keyReleaseEvent(event);
    if (m_escape.isEndedBy(*event)) {
        emit escaped();
    }
}

void PanelSurface::contextMenuEvent(QContextMenuEvent *event) {
    emit contextMenuRequested(event->globalPos());
}

} // namespace morvane

#include "moc_PanelSurface.cpp"
