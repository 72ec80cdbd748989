#pragma once

#include "Support/BusService.h"

#include <QDBusVariant>

namespace morvane {

/// A desktop's watcher of status notifiers, which has a host when the test says so.
class TrayWatcher : public BusService {
public:
    explicit TrayWatcher(const QDBusConnection &bus, bool hasHost = true)
        : BusService(bus, "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher"),
          m_hasHost(hasHost) {}

    void setHost(bool hasHost) {
        m_hasHost = hasHost;
        signal("/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
               hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", {});
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

    /// The service that registered an item last.
    QString item;

private:
    bool m_hasHost;
};

} // namespace morvane
