#include "EndToEnd/TrayHost.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace morvane {

namespace {

const QString connectionName = "tray host";
const QString watcherService = "org.kde.StatusNotifierWatcher";
const QString watcherPath = "/StatusNotifierWatcher";
const QString itemPath = "/StatusNotifierItem";
const QString itemInterface = "org.kde.StatusNotifierItem";
const QString menuInterface = "com.canonical.dbusmenu";

} // namespace

QString TrayHost::MenuItem::text() const {
    return properties.value("label").toString().remove(u'_');
}

QString TrayHost::MenuItem::line() const {
    QString result(2 * (depth - 1), u' ');
    if (properties.value("toggle-state").toInt() == 1) {
        result += "[x] ";
    }
    result += text();
    if (properties.contains("shortcut")) {
        const auto keys = qdbus_cast<QList<QStringList>>(properties.value("shortcut"));
        result += " <" + keys.value(0).join(u'+') + ">";
    }
    return result;
}

TrayHost::TrayHost(const QString &busAddress)
    : m_bus(QDBusConnection::connectToBus(busAddress, connectionName)) {
    m_bus.registerObject(watcherPath, this,
                         QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots |
                             QDBusConnection::ExportAllSignals);
    m_bus.registerService(watcherService);
    emit StatusNotifierHostRegistered();
}

TrayHost::~TrayHost() {
    m_bus.unregisterService(watcherService);
    m_bus.unregisterObject(watcherPath);
    QDBusConnection::disconnectFromBus(connectionName);
}

void TrayHost::RegisterStatusNotifierItem(const QString &service) {
    m_item = service;
    for (const char *signal : {"LayoutUpdated", "ItemsPropertiesUpdated"}) {
        m_bus.connect(m_item, {}, menuInterface, signal, this, SLOT(menuChanged()));
    }
}

void TrayHost::openMenu() const {
    ask(menuPath(), menuInterface, "AboutToShow", {0});
}

QStringList TrayHost::menu() const {
    QStringList result;
    for (const MenuItem &item : menuItems()) {
        const QVariantMap &properties = item.properties;
        if (properties.value("type") != "separator" && properties.value("visible", true).toBool()) {
            result.append(item.line());
        }
    }
    return result;
}

void TrayHost::click(const QString &text) const {
    for (const MenuItem &item : menuItems()) {
        if (item.text() == text) {
            ask(menuPath(), menuInterface, "Event",
                {item.id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0u});
        }
    }
}

/// While it waits, the program may ask in turn.
QVariant TrayHost::ask(const QString &path, const QString &interface, const QString &method,
                       const QVariantList &arguments, qsizetype result) const {
    QDBusMessage message = QDBusMessage::createMethodCall(m_item, path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::BlockWithGui).arguments().value(result);
}

QString TrayHost::menuPath() const {
    return ask(itemPath, "org.freedesktop.DBus.Properties", "Get", {itemInterface, "Menu"})
        .value<QDBusVariant>()
        .variant()
        .value<QDBusObjectPath>()
        .path();
}

QList<TrayHost::MenuItem> TrayHost::menuItems() const {
    QList<MenuItem> result;
    const QVariant layout = ask(menuPath(), menuInterface, "GetLayout", {0, -1, QStringList()}, 1);
    if (layout.canConvert<QDBusArgument>()) {
        read(layout.value<QDBusArgument>(), 0, result);
    }
    return result;
}

/// The root is no item of its own.
void TrayHost::read(const QDBusArgument &layout, int depth, QList<MenuItem> &into) {
    MenuItem item;
    item.depth = depth;
    layout.beginStructure();
    layout >> item.id >> item.properties;
    if (depth > 0) {
        into.append(item);
    }
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        read(child.variant().value<QDBusArgument>(), depth + 1, into);
    }
    layout.endArray();
    layout.endStructure();
}

} // namespace morvane
