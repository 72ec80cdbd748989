#pragma once

#include <QKeyEvent>

#include <optional>

namespace morvane::ButtonKeys {

/// Translates a key that presses a button into Space; none for any other key. Return then acts on
/// release like Space, while Qt's own buttons act when it goes down: if the button moves the
/// keyboard to a terminal, a Return that is still held would be typed there.
inline std::optional<QKeyEvent> asSpace(const QKeyEvent &event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter &&
        event.key() != Qt::Key_Space) {
        return std::nullopt;
    }
    return std::optional<QKeyEvent>(std::in_place, event.type(), Qt::Key_Space, event.modifiers(),
                                    QString(), event.isAutoRepeat());
}

} // namespace morvane::ButtonKeys
