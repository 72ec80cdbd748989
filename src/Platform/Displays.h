#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <optional>

namespace morvane {

/// One display. All rectangles are in the desktop's points.
struct Display {
    std::uint32_t id = 0;     ///< stays with the output while it is plugged in
    QRect frame;              ///< the whole of it
    QRect visibleFrame;       ///< without bars and docks
    bool isBuiltin = false;   ///< the machine's own panel
    int topSafeAreaInset = 0; ///< points at the top that a notch takes, 0 without one
    std::optional<QSize> auxiliaryTopLeftArea = {}; ///< to the left of a notch, where that is known
    std::optional<QSize> auxiliaryTopRightArea = {}; ///< to the right of it

    friend bool operator==(const Display &, const Display &) = default;
};

/// The displays of the desktop, and the pointer on them. Main thread.
class Displays : public QObject {
    Q_OBJECT

public:
    /// The primary display first; empty when nothing is plugged in.
    virtual QList<Display> displays() const = 0;

    virtual QPoint pointerPosition() const = 0;

    /// False while the pointer is over something that hides it from this program, such as a native
    /// Wayland window. `pointerPosition` is then the last known one.
    virtual bool isPointerKnown() const { return true; }

signals:
    /// A display has come, gone or changed; may come in bursts.
    void changed();
};

} // namespace morvane
