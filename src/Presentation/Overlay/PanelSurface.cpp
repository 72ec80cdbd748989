#include "Presentation/Overlay/PanelSurface.h"

#include "Presentation/Overlay/AccessibleCapsule.h"

#include <QContextMenuEvent>

namespace morvane {

PanelSurface::PanelSurface() {
    AccessibleCapsule::install();
    // The window is never the active one, and Qt shows help texts in no other unless told to.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAccessibleName(QStringLiteral("Morvane"));
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

void PanelSurface::contextMenuEvent(QContextMenuEvent *event) {
    emit contextMenuRequested(event->globalPos());
}

} // namespace morvane
