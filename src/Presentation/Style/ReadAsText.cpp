#include "Presentation/Style/ReadAsText.h"

#include <QAccessibleWidget>

namespace morvane {

namespace {

constexpr char mark[] = "morvaneReadAsText";

QAccessibleInterface *makeText(const QString &, QObject *object) {
    return object->isWidgetType() && object->property(mark).toBool()
               ? new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::StaticText)
               : nullptr;
}

} // namespace

void readAsText(QWidget &widget) {
    QAccessible::installFactory(&makeText); // again and again is the same as once
    widget.setProperty(mark, true);
}

} // namespace morvane
