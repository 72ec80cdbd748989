#include "Presentation/Style/ReadAsText.h"

#include <QAccessibleWidget>

namespace morvane {

namespace {

constexpr char textProperty[] = "morvaneReadAsText";

/// Static text that hides its child widgets, so that they aren't read a second time.
class WholeText : public QAccessibleWidget {
public:
    explicit WholeText(QWidget *widget) : QAccessibleWidget(widget, QAccessible::StaticText) {}

    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
};

QAccessibleInterface *makeText(const QString &, QObject *object) {
    return object->isWidgetType() && object->property(textProperty).toBool()
               ? new WholeText(static_cast<QWidget *>(object))
               : nullptr;
}

} // namespace

void readAsText(QWidget &widget) {
    QAccessible::installFactory(&makeText); // installing it again has no effect
    widget.setProperty(textProperty, true);
}

} // namespace morvane
