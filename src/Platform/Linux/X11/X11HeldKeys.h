#pragma once

#include <QAbstractNativeEventFilter>

#include <bitset>
#include <cstdint>

namespace morvane {

/// Hides the false releases of a held key from the program's windows. The server repeats a held key
/// as a release and a press each time, and Qt recognises a repetition only if both arrive at once.
/// A window gets the repetitions of a key only if the key went down in it: a key held since another
/// window had the keyboard starts nothing there. Lives as long as the application shows windows;
/// main thread.
class X11HeldKeys : public QAbstractNativeEventFilter {
public:
    X11HeldKeys();

    bool nativeEventFilter(const QByteArray &kind, void *message, qintptr *result) override;

private:
    /// True if the event is kept from the windows.
    bool keepsPress(std::uint8_t key, std::uint32_t time, bool isWithAlt);
    bool keepsRelease(std::uint8_t key, std::uint32_t time);

    std::bitset<256> m_begun; ///< the keys that have gone down in the window with the keyboard
    std::uint8_t m_repeatedKey = 0;
    std::uint32_t m_repeatedAt = 0; ///< by the server's clock
};

} // namespace morvane
