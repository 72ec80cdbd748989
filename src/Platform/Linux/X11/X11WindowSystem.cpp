#include "Platform/Linux/X11/X11WindowSystem.h"

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Linux/X11/XcbReply.h"
#include "Platform/Scheduler.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <xcb/xcb.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace morvane {

namespace {

/// The most that is read of a text, which another program may have made as long as it likes.
constexpr std::uint32_t maxTextWords = WindowSystem::longestTitle / sizeof(std::uint32_t);

constexpr std::uint32_t allDesktops = 0xffffffff; ///< or an unknown one
const QByteArray currentDesktopName("_NET_CURRENT_DESKTOP");
constexpr Seconds desktopLimit(0.5);
constexpr std::uint32_t fromPerson = 2; ///< the source of a request that isn't the program's own

/// Requests about a window, all sent before the first reply is read.
class WindowQuestions {
public:
    WindowQuestions(X11Connection &x11, xcb_window_t window)
        : m_x11(x11), m_window(window), m_title(ask("_NET_WM_NAME")), m_oldTitle(ask("WM_NAME")),
          m_class(ask("WM_CLASS")), m_process(ask("_NET_WM_PID")),
          m_machine(ask("WM_CLIENT_MACHINE")), m_owner(ask("WM_TRANSIENT_FOR")) {}

    /// None for a dialogue, which comes along with the window that it belongs to.
    std::optional<WindowSystem::Window> answer() {
        WindowSystem::Window result;
        result.id = QString::number(m_window);
        result.title = text(m_title);
        const QString oldTitle = text(m_oldTitle);
        result.title = result.title.isEmpty() ? oldTitle : result.title;
        // Two names, each with a zero byte at its end: the instance's and the class's.
        result.names = text(m_class).split(QChar(u'\0'), Qt::SkipEmptyParts);
        result.process = number(m_process);
        // On another machine the number means another process.
        const QString machine = text(m_machine);
        if (!machine.isEmpty() && machine != QSysInfo::machineHostName()) {
            result.process = 0;
        }
        const std::uint32_t owner = number(m_owner);
        return owner == XCB_WINDOW_NONE || owner == m_x11.root() ? std::optional(result)
                                                                 : std::nullopt;
    }

private:
    using Reply = XcbReply<xcb_get_property_reply_t>;

    xcb_get_property_cookie_t ask(const char *name) {
        return xcb_get_property(m_x11.connection(), 0, m_window, m_x11.atom(name),
                                XCB_GET_PROPERTY_TYPE_ANY, 0, maxTextWords);
    }

    Reply reply(xcb_get_property_cookie_t cookie) {
        return Reply(xcb_get_property_reply(m_x11.connection(), cookie, nullptr));
    }

    QString text(xcb_get_property_cookie_t cookie) {
        const Reply property = reply(cookie);
        if (!property || property->format != 8) {
            return {};
        }
        const QByteArray bytes(static_cast<const char *>(xcb_get_property_value(property.get())),
                               xcb_get_property_value_length(property.get()));
        return property->type == XCB_ATOM_STRING ? QString::fromLatin1(bytes)
                                                 : QString::fromUtf8(bytes);
    }

    std::uint32_t number(xcb_get_property_cookie_t cookie) {
        const Reply property = reply(cookie);
        return property && property->format == 32 && property->value_len > 0
                   ? *static_cast<const std::uint32_t *>(xcb_get_property_value(property.get()))
                   : 0;
    }

    X11Connection &m_x11;
    const xcb_window_t m_window;
    const xcb_get_property_cookie_t m_title;
    const xcb_get_property_cookie_t m_oldTitle;
    const xcb_get_property_cookie_t m_class;
    const xcb_get_property_cookie_t m_process;
    const xcb_get_property_cookie_t m_machine;
    const xcb_get_property_cookie_t m_owner;
};

} // namespace

X11WindowSystem::X11WindowSystem(X11Connection &x11, Scheduler &scheduler)
    : m_x11(x11), m_scheduler(scheduler) {
    QObject::connect(&m_x11, &X11Connection::rootPropertyChanged, &m_context,
                     [this](std::uint32_t atom) {
                         if (atom == m_x11.atom(currentDesktopName)) {
                             bringForward();
                         }
                     });
}

/// A window manager that was killed leaves its list behind, but not its check window. Under
/// XWayland it doesn't manage most windows of the desktop.
bool X11WindowSystem::canFocusWindows() const {
    const QByteArray check("_NET_SUPPORTING_WM_CHECK");
    const auto manager = m_x11.property(m_x11.root(), check, XCB_ATOM_WINDOW);
    return !m_x11.isXwayland() && !manager.isEmpty() &&
           m_x11.property(manager.first(), check, XCB_ATOM_WINDOW) == manager &&
           m_x11.property(m_x11.root(), "_NET_SUPPORTED", XCB_ATOM_ATOM)
               .contains(m_x11.atom("_NET_ACTIVE_WINDOW"));
}

void X11WindowSystem::list(Listed listed) {
    QMetaObject::invokeMethod(
        &m_context,
        [this, listed = std::move(listed)] {
            listed({windows(), canFocusWindows()});
        },
        Qt::QueuedConnection);
}

QList<WindowSystem::Window> X11WindowSystem::windows() const {
    auto ids = m_x11.property(m_x11.root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW);
    if (ids.isEmpty()) {
        ids = m_x11.property(m_x11.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW);
    }
    std::ranges::reverse(ids);
    std::vector<WindowQuestions> questions;
    questions.reserve(static_cast<std::size_t>(ids.size()));
    for (const std::uint32_t id : ids) {
        questions.emplace_back(m_x11, id);
    }
    QList<Window> result;
    for (WindowQuestions &question : questions) {
        if (const auto window = question.answer()) {
            result.append(*window);
        }
    }
    return result;
}

void X11WindowSystem::activate(const QString &id) {
    withTime([this, window = id.toUInt()](std::uint32_t time) { goTo(window, time); });
}

/// Several window managers don't activate a window on another desktop, and after a desktop change
/// they give the keyboard to the window there that had it last. So the desktop is changed first,
/// and the window activated once that has happened.
void X11WindowSystem::goTo(std::uint32_t window, std::uint32_t time) {
    m_window = window;
    m_time = time;
    const std::uint32_t desktop = desktopOf(window, "_NET_WM_DESKTOP");
    if (desktop == allDesktops || desktop == desktopOf(m_x11.root(), currentDesktopName)) {
        bringForward();
        return;
    }
    send(m_x11.root(), currentDesktopName, {desktop, time});
    m_arrival = m_scheduler.after(desktopLimit, [this] { bringForward(); });
}

void X11WindowSystem::bringForward() {
    m_arrival.cancel();
    if (const auto window = std::exchange(m_window, XCB_WINDOW_NONE); window != XCB_WINDOW_NONE) {
        send(window, "_NET_ACTIVE_WINDOW", {fromPerson, m_time, XCB_WINDOW_NONE});
    }
}

std::uint32_t X11WindowSystem::desktopOf(std::uint32_t window, const QByteArray &property) const {
    return m_x11.property(window, property, XCB_ATOM_CARDINAL).value(0, allDesktops);
}

/// Sends a message to the window manager, which receives those to the root window.
void X11WindowSystem::send(std::uint32_t window, const QByteArray &message,
                           const QList<std::uint32_t> &items) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_x11.atom(message);
    std::ranges::copy(items, event.data.data32);
    xcb_send_event(m_x11.connection(), 0, m_x11.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    xcb_flush(m_x11.connection());
}

/// The id has the form of freedesktop.org's startup notification: toolkits and window managers read
/// the time of the person's click from its end.
void X11WindowSystem::prepareLaunch(const std::function<void(const QString &startupID)> &prepared) {
    withTime([this, prepared](std::uint32_t time) {
        prepared(QStringLiteral("morvane-%1-%2_TIME%3")
                     .arg(QCoreApplication::applicationPid())
                     .arg(++m_launches)
                     .arg(time));
    });
}

void X11WindowSystem::withTime(std::function<void(std::uint32_t)> action) {
    QObject::connect(&m_x11, &X11Connection::timeTold, &m_context, std::move(action),
                     Qt::SingleShotConnection);
    m_x11.askTime();
}

} // namespace morvane
