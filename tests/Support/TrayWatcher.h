#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace morvane {

/// A desktop's watcher of status notifiers, which comes and goes, and has a host, when the test
/// says so.
class TrayWatcher : public QDBusVirtualObject {
public:
    explicit TrayWatcher(const QDBusConnection &bus) : m_bus(bus) {
        m_bus.registerVirtualObject(m_path, this);
    }
    ~TrayWatcher() override {
        go();
        m_bus.unregisterObject(m_path);
    }

    /// In the place of the one that is there, if any.
    void come() {
        m_bus.interface()->registerService(m_service,
                                           QDBusConnectionInterface::ReplaceExistingService,
                                           QDBusConnectionInterface::AllowReplacement);
    }
    void go() { m_bus.unregisterService(m_service); }
    void setHost(bool hasHost) {
        m_hasHost = hasHost;
        const char *signal =
            hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered";
        m_bus.send(QDBusMessage::createSignal(m_path, m_service, signal));
    }

    QString introspect(const QString &) const override {
        return "<interface name=\"org.kde.StatusNotifierWatcher\"><property type=\"b\" "
               "name=\"IsStatusNotifierHostRegistered\" access=\"read\"/></interface>";
    }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        if (message.member() == "RegisterStatusNotifierItem") {
            item = message.arguments().value(0).toString();
            return bus.send(message.createReply());
        }
        const QVariant answer = QVariant::fromValue(QDBusVariant(m_hasHost));
        return message.arguments().value(1) == "IsStatusNotifierHostRegistered" &&
               bus.send(message.createReply(answer));
    }

    /// The service of the program that has put an item here last.
    QString item;

private:
    const QString m_service = "org.kde.StatusNotifierWatcher";
    const QString m_path = "/StatusNotifierWatcher";
    QDBusConnection m_bus;
    bool m_hasHost = false;
};

} // namespace morvane
