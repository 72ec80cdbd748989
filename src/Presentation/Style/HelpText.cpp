#include "Presentation/Style/HelpText.h"

#include <QWidget>

namespace morvane {

void setHelpText(QWidget &widget, const QString &text) {
    widget.setToolTip(helpMarkup(text));
    widget.setAccessibleDescription(text);
}

/// A tool tip guesses from its text whether it is markup, so it always gets markup.
QString helpMarkup(const QString &text) {
    return text.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

} // namespace morvane
