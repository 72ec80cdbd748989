#include "Platform/Linux/X11PointerMonitor.h"

#include "Platform/Linux/X11Connection.h"
#include "Platform/Linux/XcbReply.h"

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace morvane {

namespace {

constexpr Seconds checkInterval(0.05);

// From this version on raw events come also while another program has grabbed the pointer.
constexpr std::uint16_t majorVersion = 2;
constexpr std::uint16_t minorVersion = 2;

/// The extension's opcode, or 0 when it is missing or too old.
std::uint8_t inputExtension(xcb_connection_t *connection) {
    const auto *extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return 0;
    }
    const auto cookie = xcb_input_xi_query_version(connection, majorVersion, minorVersion);
    const XcbReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(connection, cookie, nullptr));
    const bool isKnown =
        version && version->major_version == majorVersion && version->minor_version >= minorVersion;
    return isKnown ? extension->major_opcode : std::uint8_t(0);
}

} // namespace

X11PointerMonitor::X11PointerMonitor(X11Connection &x11, Scheduler &scheduler)
    : m_x11(x11), m_scheduler(scheduler), m_extension(inputExtension(x11.connection())) {
    connect(&m_x11, &X11Connection::extensionEvent, this,
            [this](std::uint8_t extension, std::uint16_t type) {
                if (extension == m_extension && type == XCB_INPUT_RAW_MOTION) {
                    follow();
                }
            });
}

void X11PointerMonitor::activate() {
    if (m_users++ == 0) {
        listen(Listening::on);
    }
}

void X11PointerMonitor::deactivate() {
    if (--m_users == 0) {
        m_check.cancel();
        listen(Listening::off);
    }
}

void X11PointerMonitor::listen(Listening listening) {
    if (m_extension == 0) {
        return;
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, 0};
    if (listening == Listening::on) {
        request.mask = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    }
    xcb_input_xi_select_events(m_x11.connection(), m_x11.root(), 1, &request.head);
    xcb_flush(m_x11.connection());
}

void X11PointerMonitor::follow() {
    if (m_users == 0) {
        return;
    }
    listen(Listening::off);
    m_lastPosition.reset();
    m_check = m_scheduler.after(checkInterval, [this] { check(); });
    emit moved();
}

void X11PointerMonitor::check() {
    const auto before = m_lastPosition;
    m_lastPosition = position();
    if (m_lastPosition == before) {
        // What has moved since the last look, and up to the server's hearing of this, would be
        // lost without another one.
        listen(Listening::on);
        m_lastPosition = position();
        if (m_lastPosition == before) {
            return;
        }
        listen(Listening::off);
    }
    m_check = m_scheduler.after(checkInterval, [this] { check(); });
    emit moved();
}

std::optional<QPoint> X11PointerMonitor::position() const {
    const auto cookie = xcb_query_pointer(m_x11.connection(), m_x11.root());
    const XcbReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(m_x11.connection(), cookie, nullptr));
    return reply ? std::optional(QPoint(reply->root_x, reply->root_y)) : std::nullopt;
}

} // namespace morvane
