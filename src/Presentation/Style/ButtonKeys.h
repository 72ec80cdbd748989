#pragma once

#include <QKeyEvent>

namespace morvane::ButtonKeys {

/// The keys that press a button.
inline bool contain(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Space;
}

/// Return does what Space does: it presses once it is let go, and not if it was held from before.
/// Where the keyboard goes to a terminal with that, a Return that is still held would be typed
/// there.
inline QKeyEvent asSpace(const QKeyEvent &event) {
    return {event.type(), Qt::Key_Space, event.modifiers(), {}, event.isAutoRepeat()};
}

} // namespace morvane::ButtonKeys
