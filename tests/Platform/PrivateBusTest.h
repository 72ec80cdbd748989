#pragma once

#include "EndToEnd/ChildProcess.h"
#include "Support/BusService.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {

/// Names no services to start, so that nothing installed on the machine takes part in the test.
constexpr const char *busConfiguration = R"(<busconfig><type>session</type>
<listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/>
</policy></busconfig>)";

/// A message bus that only the test uses.
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

    /// A separate connection for each name.
    QDBusConnection connection(const QString &name) const {
        return QDBusConnection::connectToBus(m_address, m_address + name);
    }

private:
    TemporaryHome m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
    QString m_address;
};

} // namespace morvane
