#include "Platform/Linux/Wayland/SwayFullscreenWindows.h"

#include "Platform/Linux/Wayland/SwayMessage.h"
#include "Platform/Wayland/StandInSocket.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QPointer>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using SwayMessage::Type;

/// The two displays of a layout, the second with two workspaces; `film` is one of the shown one.
QByteArray layout(const QByteArray &film, const QByteArray &shown = "2") {
    return R"({"type":"root","fullscreen_mode":0,"nodes":[
{"type":"output","name":"left","current_workspace":"1","nodes":[
 {"type":"workspace","name":"1","fullscreen_mode":1,"rect":{"width":800,"height":600},"nodes":[
  {"type":"con","fullscreen_mode":0,"pid":7,"rect":{"width":800,"height":600}}]}]},
{"type":"output","name":"right","current_workspace":")" +
           shown + R"(","nodes":[
 {"type":"workspace","name":"2","fullscreen_mode":1,"nodes":[{"type":"con","nodes":[)" +
           film + R"(]}]},
 {"type":"workspace","name":"3","fullscreen_mode":1}]}]})";
}

const QByteArray film =
    R"({"type":"con","fullscreen_mode":1,"rect":{"x":800,"y":0,"width":1280,"height":720}})";
const QList<QRect> right{{800, 0, 1280, 720}};

/// A stand-in for sway.
class SwayFullscreenWindowsTest : public testing::Test {
protected:
    SwayFullscreenWindowsTest() {
        QObject::connect(&windows, &FullscreenWindows::changed, [this] { ++changes; });
    }

    /// An event, as far as it is read; its type isn't.
    void tell(const QByteArray &event) {
        events->write(SwayMessage::encode(Type::subscribe, event));
    }

    void change(const QByteArray &to, const QByteArray &event = R"({"change":"focus"})") {
        answer = to;
        tell(event);
    }

    bool has(const QList<QRect> &areas) {
        return becomesTrue([&] { return windows.areas() == areas; });
    }

    void followFilm() {
        answer = layout(film);
        windows.follow();
        ASSERT_TRUE(has(right));
    }

    TemporaryHome folder;
    StandInSocket server{folder.path("socket"),
                         [this](QLocalSocket *socket, const QByteArray &question) {
                             if (question == SwayMessage::encode(Type::getTree)) {
                                 ++questions;
                                 socket->write(SwayMessage::encode(Type::getTree, answer));
                             } else {
                                 events = socket;
                                 tell(R"({"success":true})");
                             }
                         }};
    QPointer<QLocalSocket> events;
    QByteArray answer = layout("");
    int questions = 0;
    int changes = 0;
    SwayFullscreenWindows windows{folder.path("socket")};
};

TEST_F(SwayFullscreenWindowsTest, FollowsAFilmThatComesLeavesAndGoesOutOfView) {
    followFilm();
    EXPECT_EQ(changes, 1);
    change(layout(film, "3"), R"({"change":"focus","current":{"type":"workspace"}})");
    EXPECT_TRUE(has({}));
    change(layout(film));
    EXPECT_TRUE(has(right));
    change(layout(QByteArray(film).replace("_mode\":1", "_mode\":0")));
    EXPECT_TRUE(has({}));
    // One that lies on all displays is above every workspace.
    change(layout(QByteArray(film).replace("_mode\":1", "_mode\":2"), "3"));
    EXPECT_TRUE(has(right));
    EXPECT_EQ(changes, 5);
}

TEST_F(SwayFullscreenWindowsTest, AsksNothingForTitlesAndFewTimesForManyEvents) {
    followFilm();
    int before = questions;
    for (int i = 0; i < 1000; ++i) {
        tell(R"({"change":"title"})");
    }
    change(layout(""));
    EXPECT_TRUE(has({}));
    EXPECT_EQ(questions - before, 1);
    before = questions;
    for (int i = 0; i < 1000; ++i) {
        tell(R"({"change":"focus"})");
    }
    change(layout(film));
    EXPECT_TRUE(has(right));
    // They come in a few pieces, each of which may lead to one.
    EXPECT_LT(questions - before, 20);
}

TEST_F(SwayFullscreenWindowsTest, ASwayThatGoesOrTalksNonsenseHasNone) {
    SwayFullscreenWindows gone(folder.path("nobody"));
    gone.follow();
    EXPECT_EQ(gone.areas(), QList<QRect>());
    for (const QByteArray &nonsense :
         {QByteArray("HTTP/1.1 400 Bad\r\n\r\n"), QByteArray("i3-ipc\xff\xff\xff\xff\0\0\0\0", 14),
          SwayMessage::encode(Type::subscribe, R"({"success":false})")}) {
        followFilm();
        events->write(nonsense);
        EXPECT_TRUE(has({})) << nonsense.toStdString();
    }
    followFilm();
    for (const char *nonsense :
         {"", "[[[[", "{\"fullscreen_mode\":\"1\",\"nodes\":[5,{}],\"x\":["}) {
        change(nonsense, "?");
        EXPECT_TRUE(has({})) << nonsense;
        change(layout(film));
        EXPECT_TRUE(has(right));
    }
    events->abort();
    EXPECT_TRUE(has({}));
}

} // namespace
} // namespace morvane
