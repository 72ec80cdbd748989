#include "Platform/Linux/Wayland/HyprlandFullscreenWindows.h"
#include "Platform/Linux/Wayland/HyprlandWindowSystem.h"
#include "Platform/Wayland/ListedWindows.h"
#include "Platform/Wayland/StandInSocket.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

#include <QPointer>

namespace morvane {
namespace {

/// A stand-in for Hyprland with two displays, which show the workspaces 1 and 2.
class HyprlandTest : public testing::Test {
protected:
    HyprlandTest() {
        events.listen(folder.path(".socket2.sock"));
        QObject::connect(&events, &QLocalServer::newConnection,
                         [this] { listener = events.nextPendingConnection(); });
    }

    /// Sends the event in two pieces.
    void tell(const QByteArray &event) const {
        listener->write(event.left(4));
        listener->flush();
        listener->write(event.mid(4) + "\n");
    }

    void change(const QByteArray &client, const QByteArray &event = "fullscreen>>1") {
        clients = "[" + client + "]";
        tell(event);
    }

    bool has(const QList<QRect> &areas) {
        return becomesTrue([&] { return fullscreen.areas() == areas; });
    }

    /// A window of the right display.
    static QByteArray window(const QByteArray &state, int workspace = 2) {
        return R"({"at":[800,0],"size":[1280,720],"workspace":{"id":)" +
               QByteArray::number(workspace) + R"(},"fullscreen":)" + state + "}";
    }

    void followFilm() {
        clients = "[" + window("2") + "]";
        fullscreen.follow();
        ASSERT_TRUE(has(right));
    }

    const QList<QRect> right{{800, 0, 1280, 720}};
    TemporaryHome folder;
    StandInSocket questions{folder.path(".socket.sock"),
                            [this](QLocalSocket *socket, const QByteArray &question) {
                                asked += question;
                                socket->write(question == "j/monitors" ? monitors : clients);
                                socket->disconnectFromServer();
                            }};
    QLocalServer events;
    QPointer<QLocalSocket> listener;
    QByteArray monitors = R"([{"activeWorkspace":{"id":1},"specialWorkspace":{"id":0}},
                              {"activeWorkspace":{"id":2},"specialWorkspace":{"id":-99}}])";
    QByteArray clients;
    QList<QByteArray> asked;
    ManualScheduler scheduler;
    HyprlandFullscreenWindows fullscreen{folder.path(".socket.sock"), scheduler};
    HyprlandWindowSystem windows{folder.path(".socket.sock"), scheduler};
};

TEST_F(HyprlandTest, TellsItsWindowsAndBringsOneForward) {
    clients = R"([{"address":"0x5a","title":"old","class":"kitty","initialClass":"kitty","pid":5,
"focusHistoryID":1},{"address":"0x5b","title":"new","class":"foot","pid":6,"focusHistoryID":0},
{"address":"0x1;exec rm","title":"x","class":"x","pid":7},{"pid":-1},7])";
    EXPECT_EQ(listed(windows), (QStringList{"0x5b new foot 6", "0x5a old kitty,kitty 5"}));
    windows.activate("0x5b;exec rm");
    windows.activate("0x5b");
    EXPECT_TRUE(becomesTrue([this] { return asked.size() == 2; }));
    EXPECT_EQ(asked, (QList<QByteArray>{"j/clients", "dispatch focuswindow address:0x5b"}));
}

TEST_F(HyprlandTest, FollowsAFilmInTheFormOfEachRelease) {
    followFilm();
    for (const char *none : {"1", "false", R"(true,"fullscreenMode":1)"}) {
        change(window(none));
        EXPECT_TRUE(has({})) << none;
        change(window("3"), "workspace>>2");
        EXPECT_TRUE(has(right));
    }
    change(window("2", 3), "movewindow>>5a,3");
    EXPECT_TRUE(has({}));
    change(window(R"(true,"fullscreenMode":0)", -99), "activespecial>>special,right");
    EXPECT_TRUE(has(right));
}

TEST_F(HyprlandTest, IsAskedNothingForTitles) {
    followFilm();
    asked.clear();
    tell("activewindow>>foot,>>fullscreen>>1");
    tell("windowtitle>>5a");
    // A question that these events led to would arrive before the next ones are answered.
    EXPECT_TRUE(listed(windows) && listed(windows));
    EXPECT_EQ(asked, (QList<QByteArray>{"j/clients", "j/clients"}));
}

TEST_F(HyprlandTest, HasNothingWhereItTalksNonsense) {
    followFilm();
    for (const char *nonsense : {"5", R"({"fullscreen":"2"})", "{\"at\":[[["}) {
        change(nonsense);
        EXPECT_TRUE(has({})) << nonsense;
        EXPECT_EQ(listed(windows).value_or(QStringList()), QStringList()) << nonsense;
        change(window("2"));
        EXPECT_TRUE(has(right));
    }
    change(R"({"at":[1e300,-2147483648],"size":7,"workspace":{"id":1},"fullscreen":2})");
    EXPECT_TRUE(has({{0, -32768, 0, 0}}));
    listener->write(QByteArray(2 << 20, 'x'));
    EXPECT_TRUE(has({}));
}

} // namespace
} // namespace morvane
