#pragma once

#include <QKeyEvent>

#include <utility>

namespace morvane {

/// A key that acts on release. An action that gives the keyboard back must not come earlier: the
/// display server repeats a held key, and the terminal would take the repetition for a new press.
class KeyStroke {
public:
    /// Ignores a repeated press. On X11 repeats aren't marked, but a window gets only those of keys
    /// that went down in it.
    void begin(const QKeyEvent &press) {
        if (!press.isAutoRepeat()) {
            m_key = place(press);
        }
    }

    /// Whether this release ends the stroke that has begun.
    bool isEndedBy(const QKeyEvent &release) {
        return place(release) == m_key && !release.isAutoRepeat() && std::exchange(m_key, 0) != 0;
    }

    /// Drops the stroke, for instance when its release will go to another window.
    void abandon() { m_key = 0; }

private:
    /// The scan code, where there is one: unlike the letter, it stays the same when modifiers
    /// change while the key is held.
    static quint32 place(const QKeyEvent &event) {
        const quint32 code = event.nativeScanCode();
        return code != 0 ? code : static_cast<quint32>(event.key());
    }

    quint32 m_key = 0;
};

} // namespace morvane
