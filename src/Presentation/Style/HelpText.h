#pragma once

#include <QString>

class QWidget;

namespace morvane {

/// Gives a widget a help text: a tool tip for the eye, a description for a screen reader. The text
/// is shown as it stands, whatever an agent has put into it. An empty text takes the help away.
void setHelpText(QWidget &widget, const QString &text);

/// A tool tip that shows a text as it stands; empty for an empty one.
QString helpMarkup(const QString &text);

} // namespace morvane
