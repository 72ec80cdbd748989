#include "Presentation/Style/ActivateLayouts.h"

#include <QLayout>
#include <QWidget>

namespace morvane {

void activateLayouts(QWidget &widget) {
    for (QObject *child : widget.children()) {
        if (child->isWidgetType()) {
            activateLayouts(*static_cast<QWidget *>(child));
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
