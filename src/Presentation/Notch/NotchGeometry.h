#pragma once

#include <QRect>
#include <QSize>

namespace morvane {
struct Display;
}

/// Where things are around a notch, worked out from its display. All in the desktop's points, whose
/// origin is at the top left.
namespace morvane::NotchGeometry {

/// How far the closed surface reaches out of the notch on either side.
inline constexpr int compactSlot = 96;

/// The space around the open panel, at its sides and below it.
inline constexpr int expandedPadding = 15;

/// The notch itself; with a default width where the display doesn't tell it.
QSize hardwareNotchSize(const Display &display);

/// The height that the open panel's content may take.
int contentHeightBudget(const Display &display);

/// The width that it may take; the panel then reaches from edge to edge of the display.
int contentWidthBudget(const Display &display);

/// The transparent window: large enough for the open panel, so that opening it resizes no window.
QRect stageFrame(const Display &display);

/// Where the pointer has to rest to open the panel.
QRectF hoverZone(const Display &display);

QSize compactShellSize(const QSize &notch);
QSize expandedShellSize(const QSize &notch, const QSize &content);

} // namespace morvane::NotchGeometry
