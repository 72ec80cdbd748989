#include "Platform/Linux/Desktop/StatusNotifierHost.h"

#include "Platform/PrivateBusTest.h"
#include "Support/TrayWatcher.h"

namespace morvane {
namespace {

class StatusNotifierHostTest : public PrivateBusTest {
protected:
    static bool becomes(const StatusNotifierHost &host, bool isPresent) {
        return becomesTrue([&] { return host.isPresent() == isPresent; });
    }
};

TEST_F(StatusNotifierHostTest, IsPresentWhileAWatcherHasAHost) {
    TrayWatcher watcher(connection("watcher"));
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
