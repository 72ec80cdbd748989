#include "Platform/Linux/Wayland/KWinFullscreenWindows.h"
#include "Platform/Linux/Wayland/KWinWindowSystem.h"
#include "Platform/PrivateBusTest.h"
#include "Platform/Wayland/ListedWindows.h"
#include "Support/ManualScheduler.h"

#include <QFile>
#include <QRegularExpression>

namespace morvane {
namespace {

/// KWin's scripting, which doesn't run the scripts, but answers in their place.
class Compositor : public BusService {
public:
    explicit Compositor(const QDBusConnection &bus)
        : BusService(bus, "/Scripting", "org.kde.KWin", QDBusConnection::SingleNode) {}

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        asked += message.member();
        if (message.member() == "loadScript") {
            if (isClosed) {
                return bus.send(message.createErrorReply(QDBusError::AccessDenied, "no scripts"));
            }
            QFile file(message.arguments().first().toString());
            EXPECT_TRUE(file.open(QFile::ReadOnly));
            script = QString::fromUtf8(file.readAll());
        }
        bus.send(message.createReply(1));
        if (message.member() == "start") {
            tell("morvane-guessed", R"([{"id":"forged"}])");
            tell(answer);
        }
        return true;
    }

    /// Sends this text as the last script would.
    void tell(const QString &text) {
        static const QRegularExpression name("\"(morvane-[^\"]+)\"");
        tell(name.match(script).captured(1), text);
    }

    QString answer;
    bool isClosed = false;
    QString script; ///< the last one

private:
    /// Makes the call that the script has at its end.
    void tell(const QString &name, const QString &text) {
        static const QRegularExpression callee(
            R"-(callDBus\("([^"]*)", "([^"]*)", "([^"]*)", "told")-");
        const auto match = callee.match(script);
        QDBusMessage call = QDBusMessage::createMethodCall(match.captured(1), match.captured(2),
                                                           match.captured(3), "told");
        call.setArguments({name, text});
        m_bus.send(call);
    }
};

class KWinTest : public PrivateBusTest {
protected:
    ManualScheduler scheduler;
};

TEST_F(KWinTest, TellsItsWindowsByAScriptThatIsTakenBack) {
    Compositor compositor(connection("compositor"));
    compositor.answer = R"([{"id":"{1}","title":"shop <2>","process":7,"names":["kitty","","k"]}])";
    KWinWindowSystem system(connection("program"), scheduler);
    EXPECT_EQ(listed(system), QStringList{"{1} shop kitty,k 7"});
    EXPECT_TRUE(becomesTrue([&] { return compositor.asked.contains("unloadScript"); }));

    compositor.answer = "not what it should be";
    EXPECT_EQ(listed(system), QStringList());
    compositor.isClosed = true;
    EXPECT_EQ(listed(system), std::nullopt);
    bool isWhole = true;
    system.list([&](const auto &listing) { isWhole = listing.isWhole; });
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(isWhole);
}

TEST_F(KWinTest, LetsNothingButAWindowsIdentifierIntoAScript) {
    Compositor compositor(connection("compositor"));
    KWinWindowSystem system(connection("program"), scheduler);
    system.activate(R"("; workspace.slotWindowClose(); ")");
    const QString window = "{6c0a5f5e-57a3-4f0f-9b39-0a8a8d9a2f11}";
    system.activate(window);
    EXPECT_TRUE(becomesTrue([&] { return compositor.asked.contains("unloadScript"); }));
    EXPECT_EQ(compositor.asked.count("loadScript"), 1);
    EXPECT_TRUE(compositor.script.contains("=== \"" + window + "\""));
}

TEST_F(KWinTest, TellsOfFullscreenWindowsForAsLongAsSomebodyListens) {
    Compositor compositor(connection("compositor"));
    compositor.answer = "[[800,0,1280,720]]";
    auto windows = std::make_unique<KWinFullscreenWindows>(connection("program"), scheduler);
    int changes = 0;
    QObject::connect(windows.get(), &FullscreenWindows::changed, [&] { ++changes; });
    const auto has = [&](const QList<QRect> &areas) {
        return becomesTrue([&] { return windows->areas() == areas; });
    };
    EXPECT_TRUE(compositor.asked.isEmpty());
    windows->follow();
    windows->follow();
    EXPECT_TRUE(has({{800, 0, 1280, 720}}));
    EXPECT_EQ(compositor.asked, (QStringList{"loadScript", "start"}));
    compositor.tell("[]");
    EXPECT_TRUE(has({}));
    compositor.tell("[[1e300,-1e300,0.9,\"x\"],7]");
    EXPECT_TRUE(has({{32767, -32768, 0, 0}, {0, 0, 0, 0}}));
    compositor.tell("[[[[");
    EXPECT_TRUE(has({}));
    EXPECT_EQ(changes, 4);
    windows.reset();
    EXPECT_TRUE(becomesTrue([&] { return compositor.asked.last() == "unloadScript"; }));
}

} // namespace
} // namespace morvane
