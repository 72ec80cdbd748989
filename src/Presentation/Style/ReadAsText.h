#pragma once

class QWidget;

namespace morvane {

/// Lets a widget that paints its words by itself be read out: to screen readers it is a text then,
/// and its accessible name is all that they say, whatever parts it has. A widget of no kind is
/// nothing to read to them.
void readAsText(QWidget &widget);

} // namespace morvane
