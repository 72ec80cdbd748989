#include "Presentation/Overlay/AccessibleCapsule.h"

#include "Presentation/Overlay/PanelSurface.h"

#include <QMenu>

namespace morvane {

namespace {

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    auto *surface = qobject_cast<PanelSurface *>(object);
    return surface != nullptr ? new AccessibleCapsule(*surface) : nullptr;
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

PanelSurface &AccessibleCapsule::surface() const {
    return *static_cast<PanelSurface *>(widget());
}

QAccessibleInterface *AccessibleCapsule::menu() const {
    QMenu *open = surface().openMenu();
    return open != nullptr ? QAccessible::queryAccessibleInterface(open) : nullptr;
}

} // namespace morvane
