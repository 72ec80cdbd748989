#include "Platform/Linux/X11/X11Connection.h"

#include "Platform/Linux/X11/XcbReply.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QScreen>
#include <QSet>
#include <QSocketNotifier>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace morvane {

namespace {

constexpr std::uint32_t maxPropertyWords = 4096;
const QByteArray clockName("_MORVANE_CLOCK");

const xcb_screen_t *screenAt(xcb_connection_t *connection, int number) {
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (number > 0 && screen.rem > 1) {
        xcb_screen_next(&screen);
        --number;
    }
    return screen.data;
}

/// A window that has been moved, shown, hidden or closed, and the watched window that reported it:
/// itself or its parent.
struct Restructuring {
    std::uint32_t watched;
    std::uint32_t window;
};

/// None when the event is about something else.
std::optional<Restructuring> restructuring(const xcb_generic_event_t &event) {
    const auto of = [](const auto &notice) { return Restructuring{notice.event, notice.window}; };
    switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
        return of(reinterpret_cast<const xcb_configure_notify_event_t &>(event));
    case XCB_MAP_NOTIFY:
        return of(reinterpret_cast<const xcb_map_notify_event_t &>(event));
    case XCB_UNMAP_NOTIFY:
        return of(reinterpret_cast<const xcb_unmap_notify_event_t &>(event));
    case XCB_REPARENT_NOTIFY:
        return of(reinterpret_cast<const xcb_reparent_notify_event_t &>(event));
    case XCB_DESTROY_NOTIFY:
        return of(reinterpret_cast<const xcb_destroy_notify_event_t &>(event));
    default:
        return std::nullopt;
    }
}

} // namespace

void X11Connection::Disconnect::operator()(xcb_connection_t *connection) const {
    xcb_disconnect(connection);
}

std::unique_ptr<X11Connection> X11Connection::open() {
    int screen = 0;
    Handle connection(xcb_connect(nullptr, &screen));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(std::move(connection), screen));
}

bool X11Connection::isReachable() {
    const Handle connection(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(connection.get()) == 0;
}

X11Connection::X11Connection(Handle connection, int screen)
    : m_connection(std::move(connection)), m_root(screenAt(m_connection.get(), screen)->root) {
    m_isXwayland = findXwayland();
    constexpr std::uint32_t events =
        XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.get(), m_root, XCB_CW_EVENT_MASK, &events);
    watchCompositor(screen);
    findInputExtension();
    const int descriptor = xcb_get_file_descriptor(m_connection.get());
    m_notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &X11Connection::readEvents);
    // Waiting for a reply may take events off the socket, which then never becomes readable.
    if (auto *dispatcher = QAbstractEventDispatcher::instance()) {
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this,
                &X11Connection::readEvents);
    }
    xcb_flush(m_connection.get());
}

X11Connection::~X11Connection() = default;

QSize X11Connection::rootSize() const {
    const auto cookie = xcb_get_geometry(connection(), m_root);
    const XcbReply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(connection(), cookie, nullptr));
    return reply ? QSize(reply->width, reply->height) : QSize();
}

std::uint32_t X11Connection::atom(const QByteArray &name) {
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd()) {
        return *known;
    }
    const auto cookie =
        xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection(), cookie, nullptr));
    return *m_atoms.insert(name, reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE));
}

QList<std::uint32_t> X11Connection::property(std::uint32_t window, const QByteArray &name,
                                             std::uint32_t type) {
    const auto cookie =
        xcb_get_property(connection(), 0, window, atom(name), type, 0, maxPropertyWords);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection(), cookie, nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto *items = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return QList<std::uint32_t>(items, items + reply->value_len);
}

void X11Connection::watchWindow(std::uint32_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection());
}

void X11Connection::stopWatching(std::uint32_t window) {
    const std::uint32_t events = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection(), window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection());
}

/// Newer servers have an extension that says so; older ones are recognised by the names of their
/// outputs.
bool X11Connection::findXwayland() {
    constexpr std::string_view name("XWAYLAND");
    const auto cookie = xcb_query_extension(connection(), name.size(), name.data());
    const XcbReply<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection(), cookie, nullptr));
    const auto screens = QGuiApplication::screens();
    return (reply && reply->present != 0) ||
           std::ranges::any_of(screens, [&](const QScreen *screen) {
               return screen->name().startsWith(QLatin1String(name.data()));
           });
}

void X11Connection::watchCompositor(int screen) {
    m_compositorSelection = atom("_NET_WM_CM_S" + QByteArray::number(screen));
    const auto *extension = xcb_get_extension_data(connection(), &xcb_xfixes_id);
    if (extension != nullptr && extension->present != 0) {
        const auto cookie = xcb_xfixes_query_version(connection(), XCB_XFIXES_MAJOR_VERSION,
                                                     XCB_XFIXES_MINOR_VERSION);
        const XcbReply<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(connection(), cookie, nullptr));
        m_selectionEvent =
            static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_xfixes_select_selection_input(
            connection(), m_root, m_compositorSelection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    readComposited();
}

void X11Connection::findInputExtension() {
    const auto *extension = xcb_get_extension_data(connection(), &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    // From 2.2 on raw events come also while another program has grabbed the pointer.
    const auto cookie = xcb_input_xi_query_version(connection(), 2, 2);
    const XcbReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(connection(), cookie, nullptr));
    if (version && version->major_version == 2 && version->minor_version >= 2) {
        m_inputExtension = extension->major_opcode;
    }
}

void X11Connection::watchPresses(bool watch) {
    selectInput(XCB_INPUT_DEVICE_ALL, watch ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS : 0);
}

void X11Connection::watchMotion(bool watch) {
    selectInput(XCB_INPUT_DEVICE_ALL_MASTER, watch ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0);
}

/// The server keeps separate masks for all devices and for all master devices.
void X11Connection::selectInput(std::uint16_t devices, std::uint32_t mask) {
    if (m_inputExtension == 0) {
        return;
    }
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{{devices, 1}, mask};
    xcb_input_xi_select_events(connection(), m_root, 1, &request.head);
    xcb_flush(connection());
}

void X11Connection::readInputEvent(std::uint16_t type, std::uint32_t detail) {
    if (type == XCB_INPUT_RAW_BUTTON_PRESS) {
        emit pressed(detail);
    } else if (type == XCB_INPUT_RAW_MOTION) {
        emit moved();
    }
}

std::uint32_t X11Connection::windowUnderPointer() const {
    const XcbReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection(), xcb_query_pointer(connection(), m_root), nullptr));
    return reply ? reply->child : std::uint32_t(XCB_WINDOW_NONE);
}

/// The server tells the time only in events, and this property change causes one. The property is
/// the root window's, so that the window manager gets the time as well: xfwm4 gives the keyboard
/// with the time of its last event, which the server ignores if we have given the keyboard back
/// since.
void X11Connection::askTime() {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, m_root, atom(clockName),
                        XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection());
}

void X11Connection::readPropertyChange(std::uint32_t window, std::uint32_t atom,
                                       std::uint32_t time) {
    if (window == m_root && atom == this->atom(clockName)) {
        emit timeTold(time);
    } else if (window == m_root) {
        emit rootPropertyChanged(atom);
    } else {
        emit windowPropertyChanged(window, atom);
    }
}

/// The server repeats a held key as a release and a press at the same time.
void X11Connection::readKeyEvent(const xcb_key_press_event_t &event) {
    if ((event.response_type & 0x7f) == XCB_KEY_RELEASE) {
        m_releasedKey = event.detail;
        m_lastRelease = event.time;
    } else if (event.detail != m_releasedKey || event.time != m_lastRelease) {
        emit keyPressed(event.detail, event.state);
    }
}

void X11Connection::readEvents() {
    if (xcb_connection_has_error(connection()) != 0) {
        // A broken connection stays readable for ever.
        m_notifier->setEnabled(false);
        return;
    }
    // Collected, since a window that is dragged sends an event at each step.
    QSet<std::uint32_t> restructured;
    bool haveTopLevelsChanged = false;
    bool hasKeyboardChanged = false;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection())}) {
        const auto type = static_cast<std::uint8_t>(event->response_type & 0x7f);
        if (type == XCB_PROPERTY_NOTIFY) {
            const auto *notice = reinterpret_cast<xcb_property_notify_event_t *>(event.get());
            readPropertyChange(notice->window, notice->atom, notice->time);
        } else if (type == XCB_GE_GENERIC) {
            const auto *notice =
                reinterpret_cast<xcb_input_raw_button_press_event_t *>(event.get());
            if (notice->extension == m_inputExtension) {
                readInputEvent(notice->event_type, notice->detail);
            }
        } else if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            readKeyEvent(*reinterpret_cast<xcb_key_press_event_t *>(event.get()));
        } else if (type == XCB_MAPPING_NOTIFY) {
            // One change comes as several events.
            hasKeyboardChanged = true;
        } else if (const auto change = restructuring(*event)) {
            if (change->watched == m_root) {
                // A window that is only moved, maybe by hand, neither comes nor goes.
                haveTopLevelsChanged = haveTopLevelsChanged || type != XCB_CONFIGURE_NOTIFY;
            } else {
                restructured.insert(change->window);
            }
        } else if (m_selectionEvent != 0 && type == m_selectionEvent) {
            readComposited();
        }
    }
    for (const std::uint32_t window : std::as_const(restructured)) {
        emit windowStructureChanged(window);
    }
    if (haveTopLevelsChanged) {
        emit topLevelsChanged();
    }
    if (hasKeyboardChanged) {
        emit keyboardChanged();
    }
}

void X11Connection::readComposited() {
    const auto cookie = xcb_get_selection_owner(connection(), m_compositorSelection);
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection(), cookie, nullptr));
    const bool composited = reply && reply->owner != XCB_WINDOW_NONE;
    if (composited != m_composited) {
        m_composited = composited;
        emit compositedChanged();
    }
}

} // namespace morvane

#include "moc_X11Connection.cpp"
