#include "Platform/Linux/Desktop/StatusNotifierHost.h"

#include "Platform/Linux/Desktop/BusQuestion.h"

#include <QDBusReply>
#include <QDBusVariant>

namespace morvane {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

StatusNotifierHost::StatusNotifierHost(const QDBusConnection &bus)
    : m_bus(bus), m_watcher(watcherService, m_bus, QDBusServiceWatcher::WatchForOwnerChange) {
    if (!m_bus.isConnected()) {
        return;
    }
    // A watcher that replaces another knows nothing of the other's items.
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) {
                setPresent(false);
                if (!owner.isEmpty()) {
                    ask();
                }
            });
    // The bus knows signals by their name alone.
    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        m_bus.connect(watcherService, watcherPath, watcherService, QLatin1String(signal), this,
                      SLOT(ask()));
    }
    ask();
}

/// A bus without the watcher answers with an error at once.
void StatusNotifierHost::ask() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question.setArguments({watcherService, QStringLiteral("IsStatusNotifierHostRegistered")});
    // A question is no reason to start a watcher.
    question.setAutoStartService(false);
    BusQuestion::ask(m_bus, question, this, [this](const QDBusReply<QDBusVariant> &reply) {
        setPresent(reply.isValid() && reply.value().variant().toBool());
    });
}

void StatusNotifierHost::setPresent(bool isPresent) {
    if (isPresent != m_isPresent) {
        m_isPresent = isPresent;
        emit presenceChanged();
    }
}

} // namespace morvane

#include "moc_StatusNotifierHost.cpp"
