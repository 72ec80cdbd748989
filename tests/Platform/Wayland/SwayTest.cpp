#include "Platform/Linux/UnixSockets.h"
#include "Platform/Linux/Wayland/SwayFullscreenWindows.h"
#include "Platform/Linux/Wayland/SwayMessage.h"
#include "Platform/Linux/Wayland/SwayWindowSystem.h"
#include "Platform/Wayland/ListedWindows.h"
#include "Platform/Wayland/StandInSocket.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

#include <QPointer>

#include <cerrno>
#include <vector>

namespace morvane {
namespace {

using SwayMessage::Type;

constexpr const char *tree = R"({"id":1,"type":"root","focus":[3,2],"nodes":[
{"id":2,"nodes":[{"id":7,"name":"a] kill","app_id":"foot","pid":70,"focus":[]}]},
{"id":3,"focus":[9,8],"nodes":[{"id":8,"name":"shop","pid":80,"app_id":null,
  "window_properties":{"class":"XTerm","instance":"xterm","title":"shop"}}],
 "floating_nodes":[{"id":9,"name":null,"app_id":"kitty","pid":90}, 5, {"pid":"x"}]}]})";

/// A display with two workspaces, one of which has the film.
QByteArray layout(const QByteArray &film, const QByteArray &shown = "2") {
    return R"({"type":"root","nodes":[{"type":"output","current_workspace":")" + shown +
           R"(","nodes":[{"type":"workspace","name":"2","fullscreen_mode":1,"nodes":[
 {"type":"con","fullscreen_mode":0,"nodes":[)" +
           film + R"(]}]},{"type":"workspace","name":"3","fullscreen_mode":1}]}]})";
}

const QByteArray film =
    R"({"type":"con","fullscreen_mode":1,"rect":{"x":800,"y":0,"width":1280,"height":720}})";
const QList<QRect> right{{800, 0, 1280, 720}};

/// A stand-in for sway, which answers in pieces.
class SwayTest : public testing::Test {
protected:
    void hear(QLocalSocket *socket, const QByteArray &question) {
        asked += question;
        if (question.endsWith(R"(["window","workspace"])")) {
            events = socket;
            tell(R"({"success":true})");
            return;
        }
        socket->write(answer.left(7));
        socket->flush();
        socket->write(answer.mid(7));
        if (closes) {
            socket->disconnectFromServer();
        }
    }

    /// Sends an event. Its message type doesn't matter, since nobody reads it.
    void tell(const QByteArray &event) {
        events->write(SwayMessage::encode(Type::subscribe, event));
    }

    void change(const QByteArray &to) {
        answer = SwayMessage::encode(Type::getTree, to);
        tell(R"({"change":"focus"})");
    }

    bool has(const QList<QRect> &areas) {
        return becomesTrue([&] { return fullscreen.areas() == areas; });
    }

    void followFilm() {
        answer = SwayMessage::encode(Type::getTree, layout(film));
        fullscreen.follow();
        ASSERT_TRUE(has(right));
    }

    TemporaryHome folder;
    StandInSocket server{
        folder.path("socket"),
        [this](QLocalSocket *socket, const QByteArray &question) { hear(socket, question); }};
    QList<QByteArray> asked;
    QPointer<QLocalSocket> events;
    QByteArray answer = SwayMessage::encode(Type::getTree, tree);
    bool closes = false;
    ManualScheduler scheduler;
    SwayFullscreenWindows fullscreen{folder.path("socket"), scheduler};
    SwayWindowSystem windows{folder.path("socket"), scheduler};
};

TEST_F(SwayTest, IsAskedAgainWhereTooManyWaitForIt) {
    server.close();
    server.setListenBacklogSize(1);
    ASSERT_TRUE(server.listen(folder.path("socket")));
    std::vector<UnixSockets::Socket> others;
    do {
        others.push_back(UnixSockets::connectTo(folder.path("socket")));
    } while (others.back().error == 0);
    EXPECT_EQ(others.back().error, EAGAIN);
    std::optional<WindowSystem::Listing> listing;
    windows.list([&](const auto &told) { listing = told; });
    ASSERT_TRUE(becomesTrue([&] {
        scheduler.advance(Seconds(0.01));
        return listing.has_value();
    }));
    EXPECT_EQ(listing->windows.size(), 3);
}

TEST_F(SwayTest, TellsItsWindowsAndBringsOneForward) {
    EXPECT_EQ(listed(windows),
              (QStringList{"9  kitty 90", "8 shop XTerm,xterm 80", "7 a] kill foot 70"}));
    windows.activate("9");
    windows.activate("1] kill; [con_id=8");
    EXPECT_TRUE(becomesTrue([this] { return asked.size() == 3; }));
    EXPECT_EQ(asked.value(0), QByteArray("i3-ipc\0\0\0\0\4\0\0\0", 14));
    EXPECT_EQ(asked.value(1), QByteArray("i3-ipc\x10\0\0\0\0\0\0\0[con_id=9] focus", 30));
    EXPECT_FALSE(asked.value(2).contains("kill"));
}

TEST_F(SwayTest, FollowsAFilmThatComesLeavesAndGoesOutOfView) {
    followFilm();
    change(layout(film, "3"));
    EXPECT_TRUE(has({}));
    // A film that covers all displays is above every workspace.
    change(layout(QByteArray(film).replace("_mode\":1", "_mode\":2"), "3"));
    EXPECT_TRUE(has(right));
    change(layout(QByteArray(film).replace("_mode\":1", "_mode\":0")));
    EXPECT_TRUE(has({}));
}

TEST_F(SwayTest, IsAskedNothingForTitlesAndFewTimesForManyEvents) {
    followFilm();
    asked.clear();
    tell(R"({"change":"title"})");
    // A question that the title led to would arrive before these are answered.
    EXPECT_TRUE(listed(windows) && listed(windows));
    EXPECT_EQ(asked.size(), 2);
    for (int i = 0; i < 1000; ++i) {
        tell(R"({"change":"focus"})");
    }
    change(layout(""));
    EXPECT_TRUE(has({}));
    // The events come in a few pieces, each of which may lead to one question.
    EXPECT_LT(asked.size(), 20);
}

TEST_F(SwayTest, HasNothingWhereItHasGoneOrTalksNonsense) {
    SwayWindowSystem gone(folder.path("nobody"), scheduler);
    EXPECT_EQ(listed(gone), std::nullopt);
    const QByteArray other("HTTP/1.1 400 Bad\r\n\r\n");
    const QByteArray endless("i3-ipc\xff\xff\xff\xff\4\0\0\0{}", 16);
    for (const QByteArray &event :
         {other, endless, SwayMessage::encode(Type::subscribe, R"({"success":false})")}) {
        followFilm();
        events->write(event);
        EXPECT_TRUE(has({})) << event.toStdString();
    }
    asked.clear();
    answer.clear();
    bool isWhole = true;
    windows.list([&](const auto &listing) { isWhole = listing.isWhole; });
    ASSERT_TRUE(becomesTrue([&] { return !asked.isEmpty(); }));
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(isWhole);
    closes = true;
    for (const QByteArray &nonsense :
         {QByteArray(), other, endless, SwayMessage::encode(Type::getTree, "[[[["),
          SwayMessage::encode(Type::getTree, R"({"fullscreen_mode":"1","nodes":[5,{}]})")}) {
        followFilm();
        answer = nonsense;
        tell("?");
        EXPECT_TRUE(has({})) << nonsense.toStdString();
        EXPECT_EQ(listed(windows).value_or(QStringList()), QStringList());
        change(layout(film));
    }
    EXPECT_TRUE(has(right));
    events->abort();
    EXPECT_TRUE(has({}));
}

} // namespace
} // namespace morvane
