#pragma once

#include <QWheelEvent>

namespace morvane {

/// How far a wheel scrolls what it turns over. What is left of one turn below a point counts with
/// the next, so that the small steps of a fine wheel add up.
class WheelDistance {
public:
    /// In points, upwards above 0; a notch of the wheel is of this height.
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
    int m_left = 0; ///< in the wheel's units, times points
};

} // namespace morvane
