#include "Platform/Linux/Desktop/GlobalShortcutsPortal.h"

#include "Platform/Linux/Desktop/BusQuestion.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <utility>

namespace morvane {

namespace {

// https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.GlobalShortcuts.html
const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalShortcuts = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString portalRequest = QStringLiteral("org.freedesktop.portal.Request");
const QString portalSession = QStringLiteral("org.freedesktop.portal.Session");
const QString portalRegistry = QStringLiteral("org.freedesktop.host.portal.Registry");
const QString portalProgram = QStringLiteral("io.morvane.morvane");
const QString shortcutPrefix = QStringLiteral("shortcut-");

struct Shortcut {
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Shortcut &shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Shortcut &shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

/// The key as the portal spells it: the modifiers in capitals, then the name of its symbol.
QString triggerOf(const HotKey &key) {
    QString result;
    result += key.control ? QStringLiteral("CTRL+") : QString();
    result += key.alt ? QStringLiteral("ALT+") : QString();
    result += key.shift ? QStringLiteral("SHIFT+") : QString();
    result += key.super ? QStringLiteral("LOGO+") : QString();
    return result + (key.symbol.size() == 1 ? key.symbol.toLower() : key.symbol);
}

} // namespace

GlobalShortcutsPortal::GlobalShortcutsPortal(const QDBusConnection &bus)
    : m_bus(bus), m_watcher(portalService, m_bus, QDBusServiceWatcher::WatchForOwnerChange) {
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    if (!m_bus.isConnected()) {
        return;
    }
    // A portal that replaces another knows nothing of the other's sessions.
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                m_session.clear();
                if (owner.isEmpty()) {
                    endRequest();
                    setStates([](std::uint32_t) { return State::unavailable; });
                } else {
                    introduce();
                    startAnew();
                }
            });
    m_bus.connect(portalService, portalPath, portalShortcuts, QStringLiteral("Activated"), this,
                  SLOT(activated(QDBusMessage)));
    m_bus.connect(portalService, portalPath, portalShortcuts, QStringLiteral("ShortcutsChanged"),
                  this, SLOT(changed(QDBusMessage)));
    m_bus.connect(portalService, QString(), portalSession, QStringLiteral("Closed"), this,
                  SLOT(closed(QDBusMessage)));
    introduce();
}

/// Current portals require it of every program; older ones don't know the call.
void GlobalShortcutsPortal::introduce() {
    QDBusMessage call = QDBusMessage::createMethodCall(portalService, portalPath, portalRegistry,
                                                       QStringLiteral("Register"));
    call.setArguments({portalProgram, QVariantMap()});
    m_bus.asyncCall(call);
}

std::uint32_t GlobalShortcutsPortal::registerKey(const HotKey &key, const QString &purpose) {
    const std::uint32_t id = ++m_lastID;
    if (!purpose.isEmpty() && m_bus.isConnected()) {
        m_keys[id] = {key, purpose, State::pending};
        startAnew();
    }
    return id;
}

void GlobalShortcutsPortal::unregisterKey(std::uint32_t id) {
    if (m_keys.erase(id) > 0) {
        startAnew();
    }
}

HotKeys::State GlobalShortcutsPortal::state(std::uint32_t id) const {
    const auto known = m_keys.find(id);
    return known != m_keys.end() ? known->second.state : State::unavailable;
}

/// A session's shortcuts can't be changed, so each change needs a new session.
void GlobalShortcutsPortal::startAnew() {
    endRequest();
    closeSession();
    if (m_keys.empty()) {
        return;
    }
    const QString token = QStringLiteral("morvane%1").arg(++m_tokens);
    ask(QStringLiteral("CreateSession"), {}, {{QStringLiteral("session_handle_token"), token}},
        [this](const QVariantMap &results) {
            m_session = results.value(QStringLiteral("session_handle")).toString();
            bindShortcuts();
        });
    setStates([](std::uint32_t) { return State::pending; });
}

void GlobalShortcutsPortal::closeSession() {
    if (!m_session.isEmpty()) {
        m_bus.asyncCall(QDBusMessage::createMethodCall(portalService,
                                                       std::exchange(m_session, QString()),
                                                       portalSession, QStringLiteral("Close")));
    }
}

/// The index identifies a shortcut the next time, whatever the language of its description.
void GlobalShortcutsPortal::bindShortcuts() {
    QList<Shortcut> shortcuts;
    for (const auto &[id, key] : m_keys) {
        shortcuts.append({shortcutPrefix + QString::number(shortcuts.size()),
                          {{QStringLiteral("description"), key.purpose},
                           {QStringLiteral("preferred_trigger"), triggerOf(key.key)}}});
    }
    ask(QStringLiteral("BindShortcuts"),
        {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(shortcuts),
         QString()},
        {}, [this](const QVariantMap &results) {
            takeShortcuts(results.value(QStringLiteral("shortcuts")));
        });
}

/// The person may have left some out.
void GlobalShortcutsPortal::takeShortcuts(const QVariant &list) {
    const auto argument = list.value<QDBusArgument>();
    const auto bound = argument.currentSignature() == QLatin1String("a(sa{sv})")
                           ? qdbus_cast<QList<Shortcut>>(argument)
                           : QList<Shortcut>();
    QStringList ids;
    for (const Shortcut &shortcut : bound) {
        ids.append(shortcut.id);
    }
    setStates([&](std::uint32_t id) {
        const auto place = std::distance(m_keys.begin(), m_keys.find(id));
        return ids.contains(shortcutPrefix + QString::number(place)) ? State::works
                                                                     : State::unavailable;
    });
}

/// The answer comes as a signal from a request object whose path the call determines beforehand.
void GlobalShortcutsPortal::ask(const QString &method, QVariantList arguments, QVariantMap options,
                                Use use) {
    const QString token = QStringLiteral("morvane%1").arg(++m_tokens);
    QString sender = m_bus.baseService().mid(1);
    m_request =
        portalPath + QStringLiteral("/request/") + sender.replace(u'.', u'_') + u'/' + token;
    m_use = std::move(use);
    m_bus.connect(portalService, m_request, portalRequest, QStringLiteral("Response"), this,
                  SLOT(answered(QDBusMessage)));
    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, portalShortcuts, method);
    call.setArguments(arguments);
    send(call);
}

void GlobalShortcutsPortal::send(const QDBusMessage &call) {
    BusQuestion::ask(m_bus, call, this, [this, request = m_request](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage && m_request == request) {
            endRequest();
            setStates([](std::uint32_t) { return State::unavailable; });
        }
    });
}

void GlobalShortcutsPortal::endRequest() {
    if (!m_request.isEmpty()) {
        m_bus.disconnect(portalService, std::exchange(m_request, QString()), portalRequest,
                         QStringLiteral("Response"), this, SLOT(answered(QDBusMessage)));
    }
}

void GlobalShortcutsPortal::answered(const QDBusMessage &message) {
    if (message.path() != m_request || message.signature() != QLatin1String("ua{sv}")) {
        return;
    }
    endRequest();
    const bool isGranted = message.arguments().first().toUInt() == 0;
    if (isGranted) {
        const Use use = std::move(m_use);
        use(qdbus_cast<QVariantMap>(message.arguments().last()));
    } else {
        setStates([](std::uint32_t) { return State::unavailable; });
    }
}

void GlobalShortcutsPortal::activated(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    if (!message.signature().startsWith(QLatin1String("os")) ||
        arguments[0].value<QDBusObjectPath>().path() != m_session) {
        return;
    }
    std::uint32_t place = 0;
    for (const auto &[id, key] : m_keys) {
        if (arguments[1].toString() == shortcutPrefix + QString::number(place++)) {
            emit pressed(id);
            return;
        }
    }
}

void GlobalShortcutsPortal::changed(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    if (message.signature() == QLatin1String("oa(sa{sv})") &&
        arguments[0].value<QDBusObjectPath>().path() == m_session) {
        takeShortcuts(arguments[1]);
    }
}

/// The desktop has taken the shortcuts back.
void GlobalShortcutsPortal::closed(const QDBusMessage &message) {
    if (!m_session.isEmpty() && message.path() == m_session) {
        endRequest();
        m_session.clear();
        setStates([](std::uint32_t) { return State::unavailable; });
    }
}

void GlobalShortcutsPortal::setStates(const std::function<State(std::uint32_t)> &stateOf) {
    QList<std::uint32_t> changed;
    for (auto &[id, key] : m_keys) {
        const State before = std::exchange(key.state, stateOf(id));
        if (key.state != before) {
            changed.append(id);
        }
    }
    for (const std::uint32_t id : changed) {
        emit stateChanged(id);
    }
}

} // namespace morvane

#include "moc_GlobalShortcutsPortal.cpp"
