#include "Core/Hooks/ForwarderScripts.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

namespace morvane {
namespace {

/// The client's path in the home; only some processors have a client.
QString client() {
    return ".morvane/" + QDir(":/templates", "forwarder-*").entryList().value(0, "forwarder-none");
}

ForwarderScripts scripts(std::uint16_t port) {
    return {"the-token", port};
}

TEST(ForwarderScripts, RewritesTheScriptButNotAClientThatIsTheSame) {
    if (client().endsWith("-none")) {
        GTEST_SKIP() << "this processor has none";
    }
    const TemporaryHome home;
    ASSERT_TRUE(scripts(1).writeHookScript());
    const QString file = home.path(client());
    EXPECT_TRUE(QFileInfo(file).isExecutable());
    const QDateTime old = QDateTime::fromSecsSinceEpoch(1'000'000'000);
    home.setWritten(client(), old);
    ASSERT_TRUE(scripts(2).writeHookScript());
    EXPECT_TRUE(home.read(".morvane/hook.sh").contains("port=2\n"));
    EXPECT_EQ(QFileInfo(file).lastModified(), old);

    // The script would not trust a file from the future, as after the clock was set back.
    const QDateTime ahead = QDateTime::currentDateTime().addDays(1);
    home.setWritten(client(), ahead);
    ASSERT_TRUE(scripts(2).writeHookScript());
    EXPECT_LT(QFileInfo(file).lastModified(), ahead);

    home.write(client(), "an older one");
    ASSERT_TRUE(scripts(2).writeHookScript());
    EXPECT_NE(home.read(client()), "an older one");

    QFile::setPermissions(file, QFile::ReadOwner);
    ASSERT_TRUE(scripts(2).writeHookScript());
    EXPECT_TRUE(QFileInfo(file).isExecutable());
}

TEST(ForwarderScripts, LieInAFolderOfTheirOwnersAloneAndReplaceLinks) {
    const TemporaryHome home;
    ASSERT_TRUE(scripts(1).writeHookScript());
    EXPECT_EQ(home.mode(".morvane/hook.sh") & 0555, 0555U);
    EXPECT_EQ(home.mode(".morvane"), 0700U);
    const QByteArray content = home.read(client());
    for (const QString &name : {QString(".morvane/hook.sh"), client()}) {
        const QString other = home.write("other", content);
        QFile::remove(home.path(name));
        ASSERT_TRUE(QFile::link(other, home.path(name)));
        ASSERT_TRUE(scripts(2).writeHookScript());
        EXPECT_FALSE(QFileInfo(home.path(name)).isSymbolicLink());
        EXPECT_EQ(home.read("other"), content);
    }
}

/// An agent may run them at any moment, and a file that is open for writing can't be executed.
TEST(ForwarderScripts, AreClosedBeforeTheyHaveTheirNames) {
    const TemporaryHome home;
    ASSERT_TRUE(QDir(home.path()).mkdir(".morvane"));
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ::inotify_add_watch(watch, QFile::encodeName(home.path(".morvane")).constData(),
                        IN_CLOSE_WRITE | IN_MOVED_TO);
    ASSERT_TRUE(scripts(1).writeHookScript());
    alignas(inotify_event) char events[4096];
    const char *const end = events + ::read(watch, events, sizeof events);
    ::close(watch);
    int moved = 0;
    std::uint32_t last = 0;
    for (const char *place = events; place < end;) {
        const auto *event = reinterpret_cast<const inotify_event *>(place);
        if ((event->mask & IN_MOVED_TO) != 0) {
            ++moved;
            EXPECT_EQ(last, std::uint32_t(IN_CLOSE_WRITE)) << event->name;
        }
        last = event->mask;
        place += sizeof(inotify_event) + event->len;
    }
    EXPECT_GE(moved, 1);
}

} // namespace
} // namespace morvane
