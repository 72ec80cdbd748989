#include "Platform/Linux/ProcessDialogue.h"

#include "Platform/RaiseLowDescriptorLimit.h"
#include "Support/IsGone.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {
namespace {

using End = ToolDialogue::End;

class ProcessDialogueTest : public testing::Test {
protected:
    /// Talks to a shell script until it has said "bye".
    End hold(const QByteArray &script, Seconds patience = Seconds(30)) {
        return dialogue.hold(
            {"/bin/sh", {home.write("script.sh", script)}, {}}, "hello\n",
            [this](const QByteArray &piece) {
                heard += piece;
                return ToolDialogue::Reply{std::exchange(words, {}), heard.contains("bye")};
            },
            patience);
    }

    /// Whether the processes whose numbers the script has left in this file are gone.
    bool areGone(const QString &file) const {
        const QList<QByteArray> numbers = home.read(file).trimmed().split('\n');
        EXPECT_EQ(numbers.size(), 2);
        return waitUntil([&] {
            return std::ranges::all_of(
                numbers, [](const QByteArray &number) { return isGone(number.toLongLong()); });
        });
    }

    TemporaryHome home;
    ProcessDialogue dialogue;
    QByteArray words = "how are you\n";
    QByteArray heard;
};

TEST_F(ProcessDialogueTest, AnswersUntilOneSideEndsIt) {
    EXPECT_EQ(hold("read -r a; echo $a to you; read -r b; echo $b? bye; sleep 1000"),
              End::concluded);
    EXPECT_EQ(heard, "hello to you\nhow are you? bye\n");
    heard.clear();
    const QByteArray limit = raiseLowDescriptorLimit();
    EXPECT_EQ(hold("ulimit -n; echo last words; echo noise >&2; exit 3"), End::left);
    EXPECT_EQ(heard, limit + "\nlast words\n");
    EXPECT_EQ(dialogue.hold({home.path("none"), {}, {}}, {}, {}, Seconds(30)), End::notStarted);
}

TEST_F(ProcessDialogueTest, EndsAProgramThatIgnoresItWithAllThatItHasStarted) {
    const QByteArray deaf = "trap '' TERM; (trap '' TERM; while :; do sleep 1; done) & "
                            "printf '%s\\n' $$ $! >$HOME/numbers; echo bye; ";
    EXPECT_EQ(hold(deaf + "while :; do sleep 1; done"), End::concluded);
    EXPECT_TRUE(areGone("numbers"));
    // Also where the program itself has already ended.
    heard.clear();
    EXPECT_EQ(hold(deaf), End::concluded);
    EXPECT_TRUE(areGone("numbers"));
    heard.clear();
    EXPECT_EQ(hold("exec sleep 1000", Seconds(0.1)), End::timedOut);
}

TEST_F(ProcessDialogueTest, LeavesNobodyBehindWhenTheProgramEndsWhileItTalks) {
    const pid_t program = fork();
    if (program == 0) {
        hold("(exec sleep 1000) & trap 'kill $!' TERM; printf '%s\\n' $$ $! >$HOME/numbers; wait");
        std::_Exit(1);
    }
    EXPECT_TRUE(waitUntil([&] { return home.read("numbers").count('\n') == 2; }));
    ::kill(program, SIGKILL);
    ::waitpid(program, nullptr, 0);
    EXPECT_TRUE(areGone("numbers"));
}

} // namespace
} // namespace morvane
