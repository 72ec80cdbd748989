#pragma once

#include <QKeyEvent>

#include <utility>

namespace morvane {

/// A key that counts once it is let go. What gives the keyboard back must not do so earlier: the
/// server repeats a key that is held, and the terminal would take that for one pressed anew.
class KeyStroke {
public:
    /// One that is held from before, when something else had the keyboard, begins nothing.
    void begin(const QKeyEvent &press) {
        if (!press.isAutoRepeat()) {
            m_key = press.key();
        }
    }

    /// Whether it ends the stroke that has begun.
    bool isEndedBy(const QKeyEvent &release) {
        return release.key() == m_key && !release.isAutoRepeat() && std::exchange(m_key, 0) != 0;
    }

    /// Nothing comes of it any more.
    void abandon() { m_key = 0; }

private:
    int m_key = 0;
};

} // namespace morvane
