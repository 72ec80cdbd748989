#include "Presentation/Style/ReadAsText.h"

#include <QAccessibleWidget>

namespace morvane {

namespace {

constexpr char textProperty[] = "morvaneReadAsText";

QAccessibleInterface *makeText(const QString &, QObject *object) {
    return object->isWidgetType() && object->property(textProperty).toBool()
               ? new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::StaticText)
               : nullptr;
}

} // namespace

void readAsText(QWidget &widget) {
    QAccessible::installFactory(&makeText); // again and again is the same as once
    widget.setProperty(textProperty, true);
}

} // namespace morvane
