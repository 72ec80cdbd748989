#include "Platform/Linux/Desktop/DesktopMotion.h"

#include "Platform/PrivateBusTest.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>

namespace morvane {
namespace {

using Settings = QMap<QString, QVariantMap>;

const QString path = "/org/freedesktop/portal/desktop";

const QString appearance = "org.freedesktop.appearance";
const QString gnome = "org.gnome.desktop.interface";
const QString kde = "org.kde.kdeglobals.KDE";

/// The settings portal of a desktop that has only these settings.
class Portal : public BusService {
public:
    Portal(const QDBusConnection &bus, Settings settings)
        : BusService(bus, path, "org.freedesktop.portal.Desktop", QDBusConnection::SingleNode),
          m_settings(std::move(settings)) {
        qDBusRegisterMetaType<Settings>();
    }

    void set(const QString &space, const QString &key, const QVariant &value) {
        m_settings[space][key] = value;
        signal(path, "org.freedesktop.portal.Settings", "SettingChanged",
               {space, key, QVariant::fromValue(QDBusVariant(value))});
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override {
        if (message.member() != "ReadAll") {
            return false;
        }
        Settings answer;
        for (const QString &space : message.arguments().first().toStringList()) {
            if (m_settings.contains(space)) {
                answer[space] = m_settings[space];
            }
        }
        return bus.send(message.createReply(QVariant::fromValue(answer)));
    }

private:
    Settings m_settings;
};

class DesktopMotionTest : public PrivateBusTest {
protected:
    static bool becomes(const DesktopMotion &motion, bool isReduced) {
        return becomesTrue([&] { return motion.isReduced() == isReduced; });
    }
};

TEST_F(DesktopMotionTest, FollowsWhatThePersonChanges) {
    Portal portal(connection("portal"), {{gnome, {{"enable-animations", false}}}});
    const DesktopMotion motion(connection("program"));
    int changes = 0;
    QObject::connect(&motion, &DesktopMotion::changed, &portal, [&] { ++changes; });
    EXPECT_TRUE(becomes(motion, true));
    portal.set(gnome, "enable-animations", true);
    EXPECT_TRUE(becomes(motion, false));
    portal.set(kde, "AnimationDurationFactor", "0");
    EXPECT_TRUE(becomes(motion, true));
    portal.set(kde, "AnimationDurationFactor", "0.5");
    EXPECT_TRUE(becomes(motion, false));

    // What all desktops share is the last word, but only in the form that it is to have.
    portal.set(gnome, "enable-animations", false);
    EXPECT_TRUE(becomes(motion, true));
    portal.set(appearance, "reduced-motion", 0u);
    EXPECT_TRUE(becomes(motion, false));
    portal.set(appearance, "reduced-motion", "much");
    EXPECT_TRUE(becomes(motion, true));
    EXPECT_EQ(changes, 7);
}

TEST_F(DesktopMotionTest, HearsAPortalThatComesLateWhicheverDesktopItIsOf) {
    const DesktopMotion motion(connection("program"));
    EXPECT_FALSE(motion.isReduced());
    const Portal late(connection("late"), {{kde, {{"AnimationDurationFactor", "0"}}}});
    EXPECT_TRUE(becomes(motion, true));
    // Others take its place.
    const Portal second(connection("second"), {});
    EXPECT_TRUE(becomes(motion, false));
    const Portal third(connection("third"), {{appearance, {{"reduced-motion", 1u}}}});
    EXPECT_TRUE(becomes(motion, true));
    const DesktopMotion alone(QDBusConnection("never connected"));
    EXPECT_FALSE(alone.isReduced());
}

} // namespace
} // namespace morvane
