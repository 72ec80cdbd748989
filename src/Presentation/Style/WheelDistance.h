#pragma once

#include <QWheelEvent>

namespace morvane {

/// Converts the turns of a wheel into a scroll distance. A fraction of a point carries over to the
/// next turn, so that the small steps of a high-resolution wheel add up.
class WheelDistance {
public:
    /// The distance in points, positive upwards; one notch of the wheel is worth `notchHeight`.
    int take(const QWheelEvent &turn, int notchHeight) {
        const QPoint pixels = turn.pixelDelta();
        if (!pixels.isNull()) {
            return pixels.y();
        }
        m_left += turn.angleDelta().y() * notchHeight;
        const int points = m_left / QWheelEvent::DefaultDeltasPerStep;
        m_left %= QWheelEvent::DefaultDeltasPerStep;
        return points;
    }

private:
    int m_left = 0; ///< the fraction carried over, in the wheel's units times points
};

} // namespace morvane
