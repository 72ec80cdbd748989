#pragma once

#include <QAbstractNativeEventFilter>

#include <bitset>
#include <cstdint>

namespace morvane {

/// Keeps from the program's windows that a key which is held has been let go. The server repeats
/// such a key as if it were let go and pressed again and again, in which Qt recognises a repetition
/// only if both have come at once. A window is told of the repetitions of a key only if the key
/// went down in it: one that is held from before, when another window had the keyboard, begins
/// nothing there. Lives as long as the application shows windows; main thread.
class X11HeldKeys : public QAbstractNativeEventFilter {
public:
    X11HeldKeys();

    bool nativeEventFilter(const QByteArray &kind, void *message, qintptr *result) override;

private:
    /// True where it is kept from the windows.
    bool keepsPress(std::uint8_t key, std::uint32_t time, bool isWithAlt);
    bool keepsRelease(std::uint8_t key, std::uint32_t time);

    std::bitset<256> m_begun; ///< the keys that have gone down in the window with the keyboard
    std::uint8_t m_repeatedKey = 0;
    std::uint32_t m_repeatedAt = 0; ///< by the server's clock
};

} // namespace morvane
