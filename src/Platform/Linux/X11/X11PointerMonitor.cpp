#include "Platform/Linux/X11/X11PointerMonitor.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"

#include <xcb/xcb.h>

namespace morvane {

namespace {

constexpr Seconds checkInterval(0.05);

} // namespace

X11PointerMonitor::X11PointerMonitor(X11Connection &x11, Scheduler &scheduler)
    : m_x11(x11), m_scheduler(scheduler) {
    connect(&m_x11, &X11Connection::moved, this, &X11PointerMonitor::follow);
}

void X11PointerMonitor::activate() {
    if (m_users++ == 0) {
        m_x11.watchMotion(true);
    }
}

void X11PointerMonitor::deactivate() {
    if (--m_users == 0) {
        m_check.cancel();
        m_x11.watchMotion(false);
    }
}

void X11PointerMonitor::follow() {
    if (m_users == 0) {
        return;
    }
    m_x11.watchMotion(false);
    m_lastPosition.reset();
    m_check = m_scheduler.after(checkInterval, [this] { check(); });
    emit moved();
}

void X11PointerMonitor::check() {
    const auto before = m_lastPosition;
    m_lastPosition = position();
    if (m_lastPosition == before) {
        // Looks once more, or movement between the last look and the start of listening would be
        // lost.
        m_x11.watchMotion(true);
        m_lastPosition = position();
        if (m_lastPosition == before) {
            return;
        }
        m_x11.watchMotion(false);
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

#include "moc_X11PointerMonitor.cpp"
