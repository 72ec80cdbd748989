#include "Presentation/Overlay/AccessibleCapsule.h"

#include "Presentation/Overlay/Announcement.h"
#include "Presentation/Overlay/PanelSurface.h"

#include <QMenu>

namespace morvane {

namespace {

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    if (auto *surface = qobject_cast<PanelSurface *>(object)) {
        return new AccessibleCapsule(*surface);
    }
    auto *announcement = qobject_cast<Announcement *>(object);
    return announcement != nullptr ? new QAccessibleWidget(announcement, QAccessible::Notification)
                                   : nullptr;
}

} // namespace

AccessibleCapsule::AccessibleCapsule(PanelSurface &surface) : QAccessibleWidget(&surface) {}

void AccessibleCapsule::install() {
    QAccessible::installFactory(&makeAccessible);
}

QRect AccessibleCapsule::rect() const {
    const QRect visible = surface().visibleRect();
    return {surface().mapToGlobal(visible.topLeft()), visible.size()};
}

int AccessibleCapsule::childCount() const {
    return QAccessibleWidget::childCount() + (menu() != nullptr ? 1 : 0);
}

QAccessibleInterface *AccessibleCapsule::child(int index) const {
    const int others = QAccessibleWidget::childCount();
    return index == others ? menu() : QAccessibleWidget::child(index);
}

int AccessibleCapsule::indexOfChild(const QAccessibleInterface *child) const {
    return child != nullptr && child == menu() ? QAccessibleWidget::childCount()
                                               : QAccessibleWidget::indexOfChild(child);
}

QStringList AccessibleCapsule::actionNames() const {
    return QStringList{pressAction(), showMenuAction()} + QAccessibleWidget::actionNames();
}

void AccessibleCapsule::doAction(const QString &name) {
    if (name == pressAction()) {
        emit surface().openRequested();
    } else if (name == showMenuAction()) {
        emit surface().contextMenuRequested(rect().center());
    } else {
        QAccessibleWidget::doAction(name);
    }
}

PanelSurface &AccessibleCapsule::surface() const {
    return *static_cast<PanelSurface *>(widget());
}

QAccessibleInterface *AccessibleCapsule::menu() const {
    QMenu *open = surface().openMenu();
    return open != nullptr ? QAccessible::queryAccessibleInterface(open) : nullptr;
}

} // namespace morvane
