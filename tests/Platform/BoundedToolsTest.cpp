#include "Platform/Linux/BoundedTools.h"

#include "Platform/RaiseLowDescriptorLimit.h"
#include "Support/IsGone.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class BoundedToolsTest : public testing::Test {
protected:
    using Output = std::optional<QByteArray>;

    void start(const QString &script) {
        Tools::Command command{QStringLiteral("/bin/sh"), {"-c", script, "sh", folder.path()}, {}};
        command.environment.insert("MARK", "a b");
        tools->run(command, [this](const Output &output) { ends.append(output); });
    }

    Output outputOf(const QString &script) {
        start(script);
        EXPECT_TRUE(ends.isEmpty());
        EXPECT_TRUE(becomesTrue([this] { return !ends.isEmpty(); }));
        return ends.isEmpty() ? std::nullopt : ends.takeFirst();
    }

    /// The process id that a script has written into this file.
    pid_t written(const char *name) const { return folder.read(name).trimmed().toInt(); }

    TemporaryHome folder;
    ManualScheduler scheduler;
    std::unique_ptr<BoundedTools> tools = std::make_unique<BoundedTools>(scheduler);
    QList<Output> ends;
};

TEST_F(BoundedToolsTest, HearsWhatAToolPutsOut) {
    EXPECT_EQ(outputOf("echo \"$MARK\"; echo no >&2; cat"), "a b\n");
    EXPECT_EQ(outputOf("yes | head -c 1000000").value_or("").size(), 65536);
    EXPECT_EQ(outputOf("echo said; exit 1"), std::nullopt);
    const QByteArray limit = raiseLowDescriptorLimit();
    start("until [ -e $1/go ]; do sleep 0.01; done; ulimit -n");
    folder.write("go");
    EXPECT_TRUE(becomesTrue([this] { return !ends.isEmpty(); }));
    EXPECT_EQ(ends, QList<Output>{limit + "\n"});
    ends.clear();
    // A tool has no terminal to ask at, and what it leaves behind isn't waited for.
    EXPECT_EQ(outputOf("(: </dev/tty) 2>/dev/null || echo none; sleep 600 & echo $! >$1/left"),
              "none\n");
    EXPECT_TRUE(becomesTrue([this] { return isGone(written("left")); }));
    tools->run({QStringLiteral("/no/such tool"), {}, {}},
               [this](const Output &output) { ends.append(output); });
    EXPECT_TRUE(ends.isEmpty());
    EXPECT_TRUE(becomesTrue([this] { return ends == QList<Output>{std::nullopt}; }));
}

TEST_F(BoundedToolsTest, EndsWhatHangsWithAllThatItHasStarted) {
    start("trap '' TERM HUP; sh -c 'trap \"\" TERM; echo $$ >$0/inner; sleep 600' $1 & "
          "echo $$ >$1/outer; yes");
    ASSERT_TRUE(becomesTrue([this] { return written("inner") != 0 && written("outer") != 0; }));
    scheduler.advance(Seconds(2.9));
    EXPECT_TRUE(ends.isEmpty());
    scheduler.advance(Seconds(0.1));
    EXPECT_EQ(ends, QList<Output>{std::nullopt});
    EXPECT_TRUE(
        becomesTrue([this] { return isGone(written("inner")) && isGone(written("outer")); }));
    EXPECT_EQ(ends.size(), 1);
}

TEST_F(BoundedToolsTest, TakesItsToolsAlong) {
    start("echo $$ >$1/outer; sleep 600");
    ASSERT_TRUE(becomesTrue([this] { return written("outer") != 0; }));
    tools.reset();
    EXPECT_TRUE(waitUntil([this] { return isGone(written("outer")); }));
    EXPECT_TRUE(ends.isEmpty());
}

} // namespace
} // namespace morvane
