#include "Platform/Linux/Desktop/StatusNotifierHost.h"

#include "Platform/PrivateBusTest.h"
#include "Support/TrayWatcher.h"

namespace morvane {
namespace {

using StatusNotifierHostTest = PrivateBusTest;

TEST_F(StatusNotifierHostTest, IsPresentWhileAWatcherHasAHost) {
    TrayWatcher watcher(connection("watcher"), false);
    const StatusNotifierHost host(connection("program"));
    const auto becomes = [&](bool isPresent) {
        return becomesTrue([&] { return host.isPresent() == isPresent; });
    };
    watcher.setHost(true);
    EXPECT_TRUE(becomes(true));
    watcher.setHost(false);
    EXPECT_TRUE(becomes(false));
    watcher.setHost(true);
    EXPECT_TRUE(becomes(true));

    // Another watcher takes its place, and has no item yet.
    int changes = 0;
    QObject::connect(&host, &StatusItemHost::presenceChanged, &watcher, [&] { ++changes; });
    const TrayWatcher other(connection("other"));
    EXPECT_TRUE(becomesTrue([&] { return changes == 2; }));
    EXPECT_TRUE(host.isPresent());

    const StatusNotifierHost later(connection("later"));
    EXPECT_TRUE(becomesTrue([&] { return later.isPresent(); }));
    const StatusNotifierHost without(QDBusConnection("never connected"));
    EXPECT_FALSE(without.isPresent());
}

} // namespace
} // namespace morvane
