#include "Presentation/Style/ReadAsText.h"

#include <QAccessibleWidget>

namespace morvane {

namespace {

constexpr char textProperty[] = "morvaneReadAsText";

/// Whose parts aren't read once more.
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
    QAccessible::installFactory(&makeText); // again and again is the same as once
    widget.setProperty(textProperty, true);
}

} // namespace morvane
