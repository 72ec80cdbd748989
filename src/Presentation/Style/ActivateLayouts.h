#pragma once

class QWidget;

namespace morvane {

/// Brings the layouts of a widget, and of all that is in it, up to date at once, so that its size
/// hint is true. By itself Qt carries a change inside a widget up to the layouts around it one
/// turn of the event loop at a time.
void activateLayouts(QWidget &widget);

/// Tells the layouts around a widget at once that its content has changed its size.
void activateLayoutsAround(QWidget &widget);

} // namespace morvane
