#include "Presentation/AccessibleCapsule.h"

#include "Presentation/FloatingCapsuleView.h"

#include <QMenu>

namespace morvane {

namespace {

QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    auto *view = qobject_cast<FloatingCapsuleView *>(object);
    return view != nullptr ? new AccessibleCapsule(*view) : nullptr;
}

} // namespace

AccessibleCapsule::AccessibleCapsule(FloatingCapsuleView &view) : QAccessibleWidget(&view) {}

void AccessibleCapsule::install() {
    QAccessible::installFactory(&makeAccessible);
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

QAccessibleInterface *AccessibleCapsule::menu() const {
    QMenu *open = static_cast<FloatingCapsuleView *>(widget())->openMenu();
    return open != nullptr ? QAccessible::queryAccessibleInterface(open) : nullptr;
}

} // namespace morvane
