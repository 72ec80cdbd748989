#include "Presentation/HelpText.h"

#include <QWidget>

namespace morvane {

void setHelpText(QWidget &widget, const QString &text) {
    // A tool tip guesses from its text whether it is markup, so it always gets markup.
    const QString markup = QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
    widget.setToolTip(text.isEmpty() ? QString() : markup);
    widget.setAccessibleDescription(text);
}

} // namespace morvane
