#pragma once

class QWidget;

namespace morvane {

/// Makes a widget that paints its own text readable: a screen reader sees static text and reads its
/// accessible name alone, without its children. It would skip a plain `QWidget`.
void readAsText(QWidget &widget);

} // namespace morvane
