#include "Presentation/Style/ActivateLayouts.h"

#include <QLayout>
#include <QWidget>

namespace morvane {

namespace {

/// A widget that hasn't been shown yet takes room as well, unless it was hidden explicitly.
bool takesRoom(const QWidget &widget) {
    return !widget.isHidden() || !widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

} // namespace

void activateLayouts(QWidget &widget) {
    for (QObject *child : widget.children()) {
        auto *inner = qobject_cast<QWidget *>(child);
        if (inner != nullptr && takesRoom(*inner)) {
            activateLayouts(*inner);
        }
    }
    if (widget.layout() != nullptr) {
        widget.layout()->activate();
    }
}

void activateLayoutsAround(QWidget &widget) {
    for (QWidget *around = &widget; around != nullptr; around = around->parentWidget()) {
        if (around->layout() != nullptr) {
            around->layout()->activate();
        }
    }
}

} // namespace morvane
