#include "Platform/Linux/StatusNotifierHost.h"

#include "EndToEnd/ChildProcess.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {
namespace {

const QString service = "org.kde.StatusNotifierWatcher";
const QString path = "/StatusNotifierWatcher";

/// A watcher of status notifiers that has a host when the test says so.
class Watcher : public QDBusVirtualObject {
public:
    explicit Watcher(const QDBusConnection &bus) : m_bus(bus) {
        m_bus.registerVirtualObject(path, this);
    }
    ~Watcher() override { m_bus.unregisterObject(path); }

    void come() { m_bus.registerService(service); }
    void go() { m_bus.unregisterService(service); }
    void setHost(bool hasHost) {
        m_hasHost = hasHost;
        m_bus.send(QDBusMessage::createSignal(path, service,
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

class StatusNotifierHostTest : public testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) {
            GTEST_SKIP() << "dbus-daemon is needed and not installed";
        }
        daemon = std::make_unique<ChildProcess>(
            QStringList{"dbus-daemon", "--session", "--nofork", "--print-address=1"},
            QProcessEnvironment::systemEnvironment());
        address = QString::fromUtf8(daemon->readLine().value_or(QByteArray()));
        ASSERT_FALSE(address.isEmpty());
    }

    QDBusConnection connection(const QString &name) const {
        return QDBusConnection::connectToBus(address, name);
    }

    static bool becomes(const StatusNotifierHost &host, bool isPresent) {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            return host.isPresent() == isPresent;
        });
    }

    int count = 1;
    char name[5] = "test";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{count, arguments};
    std::unique_ptr<ChildProcess> daemon;
    QString address;
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
