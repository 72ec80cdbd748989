#include "Presentation/Style/HelpText.h"

#include "Core/Ground/BoundedText.h"

#include <QWidget>

namespace morvane {

void setHelpText(QWidget &widget, const QString &text) {
    widget.setToolTip(helpMarkup(text));
    widget.setAccessibleDescription(BoundedText::of(text, BoundedText::paragraphLength));
}

/// A tool tip guesses from its text whether it is markup, so it always gets markup.
QString helpMarkup(const QString &text) {
    const QString shown = BoundedText::of(text, BoundedText::paragraphLength);
    return shown.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(shown.toHtmlEscaped());
}

} // namespace morvane
