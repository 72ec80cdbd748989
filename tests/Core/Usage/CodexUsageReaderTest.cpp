#include "Core/Usage/CodexUsageReader.h"

#include "Core/Usage/CodexExchange.h"
#include "Core/Usage/UsageFakes.h"
#include "Support/CoreWorld.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

class CodexUsageReaderTest : public testing::Test, protected CoreWorld {
protected:
    /// Why there are no figures; empty where there are some.
    QString reason() {
        const auto result = CodexUsageReader::read(dialogue, "1.2", scheduler);
        return result ? QString() : result.error().message;
    }

    FakeDialogue dialogue;
};

TEST_F(CodexUsageReaderTest, SaysWhyThereAreNoFiguresAndStartsAServerThatMayDoNothing) {
    // A Codex that is installed on this machine would be found first.
    const bool isInstalled =
        QFileInfo("/usr/bin/codex").exists() || QFileInfo("/usr/local/bin/codex").exists();
    EXPECT_EQ(reason(), isInstalled ? "Codex isn't signed in" : "Codex isn't installed");
    home.writeProgram(".local/bin/codex");
    EXPECT_EQ(reason(), "Codex isn't signed in");
    home.write(".codex/auth.json/in-a-folder");
    EXPECT_EQ(reason(), "Codex isn't signed in");
    QDir(home.path(".codex")).removeRecursively();
    EXPECT_TRUE(dialogue.commands.empty());

    home.write(".codex/auth.json");
    dialogue.end = ToolDialogue::End::notStarted;
    EXPECT_EQ(reason(), "couldn't start Codex");
    dialogue.end = ToolDialogue::End::timedOut;
    EXPECT_EQ(reason(), "Codex didn't answer in time");
    dialogue.end = ToolDialogue::End::left;
    dialogue.says = {"{\"id\":1,\"result\":{}}\n"};
    EXPECT_EQ(reason(), "Codex rate limits unavailable");
    dialogue.says = {"{\"id\":2,\"error\":{\"code\":-32600}}\n"};
    EXPECT_EQ(reason(), "unexpected Codex usage format");
    dialogue.says = {"{\"id\":2,\"result\":{\"rateLimits\":{\"primary\":{\"usedPercent\":3}}}}\n"};
    EXPECT_EQ(reason(), "");

    const Tools::Command command = dialogue.commands.back();
    EXPECT_TRUE(command.program.endsWith("/codex"));
    EXPECT_EQ(command.arguments, QStringList({"-c", "approval_policy=never", "-s", "read-only",
                                              "-a", "never", "app-server", "--stdio"}));
    // The interpreter of a script lies beside it, wherever that is.
    const QString folder = QFileInfo(command.program).path();
    EXPECT_TRUE(command.environment.value("PATH").startsWith(folder + ':'));
}

TEST(CodexExchange, AsksOnceAndWaitsForItsAnswerAmongAllElse) {
    CodexExchange exchange;
    const auto consume = [&](const QByteArray &data) {
        const auto action = exchange.consume(data);
        return std::pair(action.sendsReadRequest, action.isOver);
    };
    constexpr std::pair nothing(false, false);
    EXPECT_EQ(consume("listening\n{\"method\":\"x\"}\n[1]\n{\"id\":\"1\",\"result\":{}}\n"),
              nothing);
    EXPECT_EQ(consume("{\"id\":1,\"error\":{}}\n{\"id\":1,\"res"), nothing);
    EXPECT_EQ(consume("ult\":{}}\n{\"id\":2,"), std::pair(true, false));
    EXPECT_EQ(consume(""), nothing);
    EXPECT_EQ(consume("\"result\":1}\n{\"id\":1,\"result\":{}}\n"), std::pair(false, true));
    EXPECT_EQ(exchange.response(), "{\"id\":2,\"result\":1}");
}

TEST(CodexExchange, GivesUpALineThatDoesNotEnd) {
    CodexExchange exchange;
    const QByteArray piece(65'536, 'x');
    int pieces = 1;
    while (pieces < 100 && !exchange.consume(piece).isOver) {
        ++pieces;
    }
    EXPECT_EQ(pieces, 17);
    EXPECT_FALSE(exchange.response());
}

} // namespace
} // namespace morvane
