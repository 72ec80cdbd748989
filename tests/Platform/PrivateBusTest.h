#pragma once

#include "EndToEnd/ChildProcess.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {

/// Knows no service that it could start: what is installed on the machine stays out of the test.
constexpr const char *busConfiguration = R"(<busconfig><type>session</type>
<listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
</policy></busconfig>)";

/// A stand-in for a service on a bus, for as long as it lives, or until another takes its place: it
/// answers at this path, and with `SubPath` at those below it.
class BusService : public QDBusVirtualObject {
public:
    BusService(const QDBusConnection &bus, const QString &path, const QString &name,
               QDBusConnection::VirtualObjectRegisterOption where = QDBusConnection::SubPath)
        : m_bus(bus), m_path(path), m_name(name) {
        m_bus.registerVirtualObject(m_path, this, where);
        m_bus.interface()->registerService(m_name, QDBusConnectionInterface::ReplaceExistingService,
                                           QDBusConnectionInterface::AllowReplacement);
    }
    ~BusService() override {
        m_bus.unregisterService(m_name);
        m_bus.unregisterObject(m_path);
    }

    QString introspect(const QString &) const override { return {}; }

protected:
    void signal(const QString &path, const QString &interface, const QString &name,
                const QVariantList &arguments) const {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        m_bus.send(signal);
    }

    QDBusConnection m_bus;

private:
    const QString m_path;
    const QString m_name;
};

/// A message bus of the test's own, on which nobody is but the test.
class PrivateBusTest : public testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty()) {
            GTEST_SKIP() << "dbus-daemon is needed and not installed";
        }
        const QString configuration = m_folder.write("bus.conf", busConfiguration);
        m_daemon = std::make_unique<ChildProcess>(QStringList{"dbus-daemon",
                                                              "--config-file=" + configuration,
                                                              "--nofork", "--print-address=1"},
                                                  QProcessEnvironment::systemEnvironment());
        m_address = QString::fromUtf8(m_daemon->readLine().value_or(QByteArray()));
        ASSERT_FALSE(m_address.isEmpty());
    }

    /// Another participant for each name.
    QDBusConnection connection(const QString &name) const {
        return QDBusConnection::connectToBus(m_address, m_address + name);
    }

private:
    TemporaryHome m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
    QString m_address;
};

} // namespace morvane
