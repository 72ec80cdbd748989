#pragma once

#include <QKeyEvent>

#include <utility>

namespace morvane {

/// A key that counts once it is let go. What gives the keyboard back must not do so earlier: the
/// server repeats a key that is held, and the terminal would take that for one pressed anew.
class KeyStroke {
public:
    /// A repetition begins nothing. X11 tells of none as such, but of those alone whose key went
    /// down in the same window.
    void begin(const QKeyEvent &press) {
        if (!press.isAutoRepeat()) {
            m_key = place(press);
        }
    }

    /// Whether it ends the stroke that has begun.
    bool isEndedBy(const QKeyEvent &release) {
        return place(release) == m_key && !release.isAutoRepeat() && std::exchange(m_key, 0) != 0;
    }

    /// Nothing comes of it any more, such as when its release will go elsewhere.
    void abandon() { m_key = 0; }

private:
    /// The same until it is let go, where the letter changes with the modifiers that are held.
    static quint32 place(const QKeyEvent &event) {
        const quint32 code = event.nativeScanCode();
        return code != 0 ? code : static_cast<quint32>(event.key());
    }

    quint32 m_key = 0;
};

} // namespace morvane
