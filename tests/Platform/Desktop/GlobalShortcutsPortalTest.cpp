#include "Platform/Linux/Desktop/GlobalShortcutsPortal.h"

#include "Platform/PrivateBusTest.h"

#include <utility>

namespace morvane {
namespace {

using State = HotKeys::State;

const QString shortcutsPath = "/org/freedesktop/portal/desktop";
const QString shortcutsSession = shortcutsPath + "/session/s";

/// A desktop's portal, behind which a person grants what is asked for, or does not.
class ShortcutsPortal : public BusService {
public:
    explicit ShortcutsPortal(const QDBusConnection &bus)
        : BusService(bus, shortcutsPath, "org.freedesktop.portal.Desktop") {}

    void press(const QString &ofSession, const QString &id) const {
        signal(shortcutsPath, "org.freedesktop.portal.GlobalShortcuts", "Activated",
               {QVariant::fromValue(QDBusObjectPath(ofSession)), id, quint64(1), QVariantMap()});
    }

    void change(const QString &ofSession, const QVariant &list) const {
        signal(shortcutsPath, "org.freedesktop.portal.GlobalShortcuts", "ShortcutsChanged",
               {QVariant::fromValue(QDBusObjectPath(ofSession)), list});
    }

    void close(const QString &session) const {
        signal(session, "org.freedesktop.portal.Session", "Closed", {QVariantMap()});
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override {
        asked += message.member();
        const QVariantList arguments = message.arguments();
        if (message.member() == "CreateSession") {
            answer(message, {{"session_handle", shortcutsSession}});
            return true;
        }
        if (message.member() == "BindShortcuts") {
            const auto list = arguments[1].value<QDBusArgument>();
            list.beginArray();
            list.beginStructure();
            list >> id >> properties;
            bound = arguments[1];
            // What was asked for comes back as it was.
            answer(message, {{"shortcuts", arguments[1]}});
            return true;
        }
        return message.member() == "Close";
    }

    bool isGranting = true;
    QString id;
    QVariantMap properties;
    QVariant bound;

private:
    void answer(const QDBusMessage &call, const QVariantMap &results) {
        const auto options = qdbus_cast<QVariantMap>(call.arguments().last());
        QString sender = call.service().mid(1);
        const QString request = shortcutsPath + "/request/" + sender.replace('.', '_') + "/" +
                                options["handle_token"].toString();
        m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        signal(request, "org.freedesktop.portal.Request", "Response",
               {isGranting ? 0U : 1U, isGranting ? results : QVariantMap()});
    }
};

class GlobalShortcutsPortalTest : public PrivateBusTest {
protected:
    static bool becomes(const HotKeys &keys, std::uint32_t id, State state) {
        return becomesTrue([&] { return keys.state(id) == state; });
    }

    const HotKey panelKey{.keyCode = 34, .symbol = "G", .super = true, .shift = true};
};

TEST_F(GlobalShortcutsPortalTest, AsksThePersonOnceAndHearsOfEachPress) {
    ShortcutsPortal portal(connection("portal"));
    GlobalShortcutsPortal keys(connection("program"));
    QList<std::uint32_t> presses;
    QObject::connect(&keys, &HotKeys::pressed, [&](std::uint32_t id) { presses.append(id); });
    const std::uint32_t panel = keys.registerKey(panelKey, "Open Morvane");
    EXPECT_EQ(keys.state(panel), State::pending);
    EXPECT_TRUE(becomes(keys, panel, State::works));
    EXPECT_EQ(portal.asked, (QStringList{"Register", "CreateSession", "BindShortcuts"}));
    EXPECT_EQ(portal.properties["description"], "Open Morvane");
    EXPECT_EQ(portal.properties["preferred_trigger"], "SHIFT+LOGO+g");

    portal.press("/somebody/elses", portal.id);
    portal.press(shortcutsSession, "another");
    portal.press(shortcutsSession, portal.id);
    EXPECT_TRUE(becomesTrue([&] { return !presses.isEmpty(); }));
    EXPECT_EQ(presses, QList{panel});

    // A key that is only needed for a moment can't be registered with the portal.
    EXPECT_EQ(keys.state(keys.registerKey({.keyCode = 1}, {})), State::unavailable);
    keys.unregisterKey(panel);
    EXPECT_TRUE(becomesTrue([&] { return portal.asked.last() == "Close"; }));
    EXPECT_EQ(portal.asked.size(), 4);
}

TEST_F(GlobalShortcutsPortalTest, HearsWhatTheDesktopTakesBack) {
    ShortcutsPortal portal(connection("portal"));
    GlobalShortcutsPortal keys(connection("program"));
    const std::uint32_t panel = keys.registerKey(panelKey, "Open Morvane");
    EXPECT_TRUE(becomes(keys, panel, State::works));
    const QVariant panelAlone = portal.bound;
    const std::uint32_t other = keys.registerKey({.keyCode = 35, .symbol = "H"}, "Close Morvane");
    EXPECT_TRUE(becomes(keys, other, State::works));
    portal.change(shortcutsSession, panelAlone);
    EXPECT_TRUE(becomes(keys, other, State::unavailable));
    portal.close("/somebody/elses");
    portal.change(shortcutsSession, portal.bound);
    EXPECT_TRUE(becomes(keys, other, State::works));
    EXPECT_EQ(keys.state(panel), State::works);
    portal.close(shortcutsSession);
    EXPECT_TRUE(becomes(keys, panel, State::unavailable));
}

TEST_F(GlobalShortcutsPortalTest, TakesANoForANoAndAPortalThatComesLate) {
    GlobalShortcutsPortal keys(connection("program"));
    const std::uint32_t panel = keys.registerKey(panelKey, "Open Morvane");
    EXPECT_TRUE(becomes(keys, panel, State::unavailable));
    auto portal = std::make_unique<ShortcutsPortal>(connection("portal"));
    EXPECT_TRUE(becomes(keys, panel, State::works));
    // Another takes its place.
    const auto former =
        std::exchange(portal, std::make_unique<ShortcutsPortal>(connection("one that takes over")));
    EXPECT_TRUE(becomesTrue([&] { return portal->asked.contains("BindShortcuts"); }));
    EXPECT_TRUE(becomes(keys, panel, State::works));
    portal.reset();
    EXPECT_TRUE(becomes(keys, panel, State::unavailable));

    ShortcutsPortal other(connection("other"));
    other.isGranting = false;
    EXPECT_TRUE(becomesTrue([&] { return other.asked.contains("CreateSession"); }));
    EXPECT_TRUE(becomes(keys, panel, State::unavailable));

    GlobalShortcutsPortal nowhere(QDBusConnection("never connected"));
    EXPECT_EQ(nowhere.state(nowhere.registerKey(panelKey, "Open Morvane")), State::unavailable);
}

} // namespace
} // namespace morvane
