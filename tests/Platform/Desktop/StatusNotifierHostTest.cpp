#include "Platform/Linux/Desktop/StatusNotifierHost.h"

#include "Platform/PrivateBusTest.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace morvane {
namespace {

const QString watcherService = "org.kde.StatusNotifierWatcher";
const QString watcherPath = "/StatusNotifierWatcher";

/// A watcher of status notifiers that has a host when the test says so.
class Watcher : public QDBusVirtualObject {
public:
    explicit Watcher(const QDBusConnection &bus) : m_bus(bus) {
        m_bus.registerVirtualObject(watcherPath, this);
    }
    ~Watcher() override { m_bus.unregisterObject(watcherPath); }

    void come() { m_bus.registerService(watcherService); }
    void go() { m_bus.unregisterService(watcherService); }
    void setHost(bool hasHost) {
        m_hasHost = hasHost;
        m_bus.send(QDBusMessage::createSignal(watcherPath, watcherService,
                                              hasHost ? "StatusNotifierHostRegistered"
                                                      : "StatusNotifierHostUnregistered"));
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        const QVariant answer = QVariant::fromValue(QDBusVariant(m_hasHost));
        return message.arguments().value(1) == "IsStatusNotifierHostRegistered" &&
               bus.send(message.createReply(answer));
    }

private:
    QDBusConnection m_bus;
    bool m_hasHost = false;
};

class StatusNotifierHostTest : public PrivateBusTest {
protected:
    static bool becomes(const StatusNotifierHost &host, bool isPresent) {
        return becomesTrue([&] { return host.isPresent() == isPresent; });
    }
};

TEST_F(StatusNotifierHostTest, IsPresentWhileAWatcherHasAHost) {
    Watcher watcher(connection("watcher"));
    const StatusNotifierHost host(connection("program"));
    watcher.come();
    watcher.setHost(true);
    EXPECT_TRUE(becomes(host, true));
    watcher.setHost(false);
    EXPECT_TRUE(becomes(host, false));
    watcher.setHost(true);
    EXPECT_TRUE(becomes(host, true));
    watcher.go();
    EXPECT_TRUE(becomes(host, false));
    // One that comes with a host already in place says nothing of it.
    watcher.come();
    EXPECT_TRUE(becomes(host, true));

    const StatusNotifierHost later(connection("later"));
    EXPECT_TRUE(becomes(later, true));
}

TEST_F(StatusNotifierHostTest, IsAbsentWithoutABus) {
    const StatusNotifierHost host(QDBusConnection("never connected"));
    EXPECT_FALSE(host.isPresent());
}

} // namespace
} // namespace morvane
