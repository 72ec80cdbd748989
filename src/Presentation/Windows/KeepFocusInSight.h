#pragma once

class QWidget;

namespace morvane {

/// For as long as `owner` lives, scrolls the widget in it that gets the focus into sight, in every
/// scroll area around that. Nothing moves under a press, nor when the program becomes active again.
void keepFocusInSight(QWidget &owner);

} // namespace morvane
