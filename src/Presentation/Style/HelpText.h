#pragma once

#include <QString>

class QWidget;

namespace morvane {

/// Gives a widget a help text: a tool tip, and a description for a screen reader. The text is never
/// taken for markup, whatever an agent has put into it. An empty text removes the help.
void setHelpText(QWidget &widget, const QString &text);

/// A tool tip that shows the text literally; empty for an empty text.
QString helpMarkup(const QString &text);

} // namespace morvane
