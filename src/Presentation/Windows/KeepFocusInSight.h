#pragma once

class QWidget;

namespace morvane {

/// From now on, for as long as the widget lives, what the keyboard comes to in it is scrolled into
/// sight, in every area of it that scrolls. Nothing moves under a press, nor when the window comes
/// back.
void keepFocusInSight(QWidget &owner);

} // namespace morvane
