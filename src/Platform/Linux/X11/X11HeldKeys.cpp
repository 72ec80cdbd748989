#include "Platform/Linux/X11/X11HeldKeys.h"

#include "Platform/Linux/X11/XcbReply.h"

#include <QGuiApplication>
#include <xcb/xcb.h>

namespace morvane {

X11HeldKeys::X11HeldKeys(QObject *parent) : QObject(parent) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11HeldKeys::nativeEventFilter(const QByteArray &, void *message, qintptr *) {
    const auto &event = *static_cast<const xcb_key_release_event_t *>(message);
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if ((event.response_type & 0x7f) != XCB_KEY_RELEASE || x11 == nullptr) {
        return false;
    }
    const XcbReply<xcb_query_keymap_reply_t> held(
        xcb_query_keymap_reply(x11->connection(), xcb_query_keymap(x11->connection()), nullptr));
    return held && (held->keys[event.detail / 8] >> (event.detail % 8) & 1) != 0;
}

} // namespace morvane

#include "moc_X11HeldKeys.cpp"
