#include "Platform/Linux/X11/X11HeldKeys.h"

#include "Platform/Linux/X11/XcbReply.h"

#include <QGuiApplication>
#include <xcb/xcb.h>

namespace morvane {

namespace {

bool isDown(xcb_connection_t *connection, std::uint8_t key) {
    const XcbReply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    return reply && (reply->keys[key / 8] >> (key % 8) & 1) != 0;
}

} // namespace

X11HeldKeys::X11HeldKeys() {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11HeldKeys::nativeEventFilter(const QByteArray &kind, void *message, qintptr *) {
    if (kind != "xcb_generic_event_t") {
        return false;
    }
    const auto &event = *static_cast<const xcb_key_press_event_t *>(message);
    switch (event.response_type & 0x7f) {
    case XCB_FOCUS_IN:
        m_begun.reset();
        return false;
    case XCB_KEY_PRESS:
        return keepsPress(event.detail, event.time, (event.state & XCB_MOD_MASK_1) != 0);
    case XCB_KEY_RELEASE:
        return keepsRelease(event.detail, event.time);
    default:
        return false;
    }
}

/// A repetition is a release and a press at the same time, in the same window. With Alt it would
/// press the button with that mnemonic again and again.
bool X11HeldKeys::keepsPress(std::uint8_t key, std::uint32_t time, bool isWithAlt) {
    const bool isRepetition = key == m_repeatedKey && time == m_repeatedAt;
    if (!isRepetition) {
        m_begun.set(key);
    }
    return !m_begun[key] || (isRepetition && isWithAlt);
}

bool X11HeldKeys::keepsRelease(std::uint8_t key, std::uint32_t time) {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    const bool isHeld = x11 != nullptr && isDown(x11->connection(), key);
    // If the program lags, the key may be up by now although this release was part of a repetition.
    if (isHeld || !m_begun[key]) {
        m_repeatedKey = key;
        m_repeatedAt = time;
    }
    if (!isHeld) {
        m_begun.reset(key);
    }
    return isHeld;
}

} // namespace morvane
