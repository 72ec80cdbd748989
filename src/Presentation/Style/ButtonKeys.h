#pragma once

#include <QKeyEvent>

#include <optional>

namespace morvane::ButtonKeys {

/// What a key that presses a button is to it; none of any other key. Return does what Space does:
/// it presses once it is let go, where a button of Qt's own would do so at once. Where the keyboard
/// goes to a terminal with that, a Return that is still held would be typed there.
inline std::optional<QKeyEvent> asSpace(const QKeyEvent &event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter &&
        event.key() != Qt::Key_Space) {
        return std::nullopt;
    }
    return std::optional<QKeyEvent>(std::in_place, event.type(), Qt::Key_Space, event.modifiers(),
                                    QString(), event.isAutoRepeat());
}

} // namespace morvane::ButtonKeys
