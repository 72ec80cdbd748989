#include "Platform/Linux/Desktop/DesktopMotion.h"

#include "Platform/Linux/Desktop/BusQuestion.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

#include <optional>

namespace morvane {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");

template <typename Value>
std::optional<Value> as(const QVariant &value) {
    return value.metaType() == QMetaType::fromType<Value>() ? std::optional(value.value<Value>())
                                                            : std::nullopt;
}

/// KDE's portal reports the factor as the text in its configuration file.
bool isZero(const QVariant &factor) {
    bool isNumber = false;
    return as<QString>(factor).value_or(QString()).toDouble(&isNumber) == 0 && isNumber;
}

} // namespace

DesktopMotion::DesktopMotion(const QDBusConnection &bus)
    : m_bus(bus), m_watcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange) {
    if (!m_bus.isConnected()) {
        return;
    }
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                if (!owner.isEmpty()) {
                    ask();
                }
            });
    // Takes the whole message, since Qt drops a signal with arguments of a type that it hasn't yet
    // met in this process.
    m_bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QDBusMessage)));
    ask();
}

void DesktopMotion::ask() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    question.setArguments({QStringList{appearance, gnome, kde}});
    BusQuestion::ask(m_bus, question, this, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ReplyMessage &&
            reply.signature() == QLatin1String("a{sa{sv}}")) {
            m_settings = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().first());
            refresh();
        }
    });
}

void DesktopMotion::settingChanged(const QDBusMessage &message) {
    if (message.signature() != QLatin1String("ssv")) {
        return;
    }
    const QString space = message.arguments()[0].toString();
    if (space == appearance || space == gnome || space == kde) {
        const auto value = qvariant_cast<QDBusVariant>(message.arguments()[2]);
        m_settings[space][message.arguments()[1].toString()] = value.variant();
        refresh();
    }
}

void DesktopMotion::refresh() {
    if (const bool isReduced = isAskedFor(); isReduced != m_isReduced) {
        m_isReduced = isReduced;
        emit changed();
    }
}

/// The setting common to all desktops takes precedence, since the others may be left over from
/// another desktop.
bool DesktopMotion::isAskedFor() const {
    const auto value = [this](const QString &space, const char *key) {
        return m_settings.value(space).value(QLatin1String(key));
    };
    if (const auto reduced = as<uint>(value(appearance, "reduced-motion"))) {
        return *reduced == 1;
    }
    return as<bool>(value(gnome, "enable-animations")) == false ||
           isZero(value(kde, "AnimationDurationFactor"));
}

} // namespace morvane

#include "moc_DesktopMotion.cpp"
