#include "Platform/Linux/UnixSockets.h"
#include "Platform/Linux/Wayland/HyprlandWindowSystem.h"
#include "Platform/Linux/Wayland/SwayMessage.h"
#include "Platform/Linux/Wayland/SwayWindowSystem.h"
#include "Platform/Wayland/ListedWindows.h"
#include "Platform/Wayland/StandInSocket.h"
#include "Support/TemporaryHome.h"

#include <cerrno>
#include <vector>

namespace morvane {
namespace {

/// A stand-in for the compositor, which answers in pieces.
class WindowSystemsTest : public testing::Test {
protected:
    TemporaryHome folder;
    StandInSocket server{folder.path("socket"),
                         [this](QLocalSocket *socket, const QByteArray &question) {
                             asked.append(question);
                             for (const char byte : answer) {
                                 socket->write(&byte, 1);
                                 socket->flush();
                             }
                             if (closes) {
                                 socket->disconnectFromServer();
                             }
                         }};
    QList<QByteArray> asked;
    QByteArray answer;
    bool closes = false;
};

constexpr const char *tree = R"({"id":1,"type":"root","focus":[3,2],"nodes":[
{"id":2,"nodes":[{"id":7,"name":"a] kill","app_id":"foot","pid":70,"focus":[]}]},
{"id":3,"focus":[9,8],"nodes":[{"id":8,"name":"shop","pid":80,"app_id":null,
  "window_properties":{"class":"XTerm","instance":"xterm","title":"shop"}}],
 "floating_nodes":[{"id":9,"name":null,"app_id":"kitty","pid":90}, 5, {"pid":"x"}]}]})";

TEST_F(WindowSystemsTest, AsksAgainWhereTooManyWaitForTheCompositor) {
    server.close();
    server.setListenBacklogSize(1);
    ASSERT_TRUE(server.listen(folder.path("socket")));
    std::vector<Descriptor> others;
    do {
        others.push_back(UnixSockets::connectTo(folder.path("socket")));
    } while (others.back().number() >= 0);
    EXPECT_EQ(errno, EAGAIN);
    SwayWindowSystem sway(folder.path("socket"));
    answer = SwayMessage::encode(SwayMessage::Type::getTree, tree);
    EXPECT_EQ(listed(sway).value_or(QStringList()).size(), 3);
}

TEST_F(WindowSystemsTest, SwayTellsItsWindowsAndBringsOneForward) {
    SwayWindowSystem sway(folder.path("socket"));
    answer = SwayMessage::encode(SwayMessage::Type::getTree, tree);
    EXPECT_EQ(listed(sway),
              (QStringList{"9  kitty 90", "8 shop XTerm,xterm 80", "7 a] kill foot 70"}));
    sway.activate("9");
    sway.activate("1] kill; [con_id=8");
    EXPECT_TRUE(becomesTrue([this] { return asked.size() == 3; }));
    const QByteArray head("i3-ipc\0\0\0\0\4\0\0\0", 14);
    EXPECT_EQ(asked.value(0), head);
    EXPECT_EQ(asked.value(1), QByteArray("i3-ipc\x10\0\0\0\0\0\0\0[con_id=9] focus", 30));
    EXPECT_FALSE(asked.value(2).contains("kill"));
}

TEST_F(WindowSystemsTest, HyprlandTellsItsWindowsAndBringsOneForward) {
    HyprlandWindowSystem hyprland(folder.path("socket"));
    closes = true;
    answer = R"([{"address":"0x5a","title":"old","class":"kitty","initialClass":"kitty","pid":5,
"focusHistoryID":1},{"address":"0x5b","title":"new","class":"foot","pid":6,"focusHistoryID":0},
{"address":"0x1;exec rm","title":"x","class":"x","pid":7},{"pid":-1},7])";
    EXPECT_EQ(listed(hyprland), (QStringList{"0x5b new foot 6", "0x5a old kitty,kitty 5"}));
    hyprland.activate("0x5b");
    hyprland.activate("0x5b;exec rm");
    EXPECT_TRUE(becomesTrue([this] { return asked.size() == 2; }));
    EXPECT_EQ(asked, (QList<QByteArray>{"j/clients", "dispatch focuswindow address:0x5b"}));
}

TEST_F(WindowSystemsTest, ACompositorThatTalksNonsenseHasNoWindows) {
    SwayWindowSystem sway(folder.path("socket"));
    HyprlandWindowSystem hyprland(folder.path("socket"));
    SwayWindowSystem gone(folder.path("nobody"));
    EXPECT_EQ(listed(gone), std::nullopt);
    closes = true;
    for (const QByteArray &nonsense :
         {QByteArray(), QByteArray("no"), QByteArray("HTTP/1.1 400 Bad\r\n\r\n"),
          QByteArray("i3-ipc\xff\xff\xff\xff\4\0\0\0{}", 16),
          SwayMessage::encode(SwayMessage::Type::getTree, "[[[[")}) {
        answer = nonsense;
        EXPECT_EQ(listed(sway).value_or(QStringList()), QStringList()) << nonsense.toStdString();
        EXPECT_EQ(listed(hyprland).value_or(QStringList()), QStringList())
            << nonsense.toStdString();
    }
}

} // namespace
} // namespace morvane
