#pragma once

#include "Platform/Displays.h"

namespace morvane {

/// Displays and a pointer that a test moves.
class FakeDisplays : public Displays {
public:
    QList<Display> displays() const override { return m_displays; }
    QPoint pointerPosition() const override { return m_pointer; }
    bool isPointerKnown() const override { return isTold; }

    void setDisplays(const QList<Display> &displays) {
        m_displays = displays;
        emit changed();
    }
    void setPointer(QPoint position) { m_pointer = position; }

    /// A display of 1000 by 800 points whose upper left corner is at `x`, with a bar of 30 points
    /// at its top.
    static Display external(std::uint32_t id, int x) {
        return {id, QRect(x, 0, 1000, 800), QRect(x, 30, 1000, 770), false, 0};
    }
    static Display builtin(std::uint32_t id, int x) {
        Display result = external(id, x);
        result.isBuiltin = true;
        return result;
    }
    /// A built-in one with a notch of 200 by 32 points.
    static Display notched(std::uint32_t id, int x) {
        Display result = builtin(id, x);
        result.topSafeAreaInset = 32;
        result.auxiliaryTopLeftArea = result.auxiliaryTopRightArea = QSize(400, 32);
        return result;
    }

    bool isTold = true;

private:
    QList<Display> m_displays;
    QPoint m_pointer{-1, -1};
};

} // namespace morvane
