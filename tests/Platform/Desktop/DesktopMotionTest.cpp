#include "Platform/Linux/Desktop/DesktopMotion.h"

#include "Platform/PrivateBusTest.h"

#include <QDBusMetaType>
#include <QDBusVariant>

namespace morvane {
namespace {

using Settings = QMap<QString, QVariantMap>;

const QString path = "/org/freedesktop/portal/desktop";

const QString appearance = "org.freedesktop.appearance";
const QString gnome = "org.gnome.desktop.interface";
const QString kde = "org.kde.kdeglobals.KDE";

class DesktopMotionTest : public PrivateBusTest {
protected:
    DesktopMotionTest() { qDBusRegisterMetaType<Settings>(); }

    /// The settings portal of a desktop that has only these settings.
    std::unique_ptr<BusService> portal(const QString &of, const Settings &settings) const {
        auto result =
            std::make_unique<BusService>(connection(of), path, "org.freedesktop.portal.Desktop");
        result->answers[path + " ReadAll(" + QStringList{appearance, gnome, kde}.join(',') + ")"] =
            {QVariant::fromValue(settings)};
        return result;
    }

    static void set(const BusService &portal, const QString &space, const QString &key,
                    const QVariant &value) {
        portal.signal(path, "org.freedesktop.portal.Settings", "SettingChanged",
                      {space, key, QVariant::fromValue(QDBusVariant(value))});
    }

    static bool becomes(const DesktopMotion &motion, bool isReduced) {
        return becomesTrue([&] { return motion.isReduced() == isReduced; });
    }
};

TEST_F(DesktopMotionTest, FollowsWhatThePersonChanges) {
    const auto desktop = portal("portal", {{gnome, {{"enable-animations", false}}}});
    const DesktopMotion motion(connection("program"));
    int changes = 0;
    QObject::connect(&motion, &DesktopMotion::changed, desktop.get(), [&] { ++changes; });
    EXPECT_TRUE(becomes(motion, true));
    set(*desktop, gnome, "enable-animations", true);
    EXPECT_TRUE(becomes(motion, false));
    set(*desktop, kde, "AnimationDurationFactor", "0");
    EXPECT_TRUE(becomes(motion, true));
    set(*desktop, kde, "AnimationDurationFactor", "0.5");
    EXPECT_TRUE(becomes(motion, false));

    // The setting that all desktops share wins, but only if its value has the right type.
    set(*desktop, gnome, "enable-animations", false);
    EXPECT_TRUE(becomes(motion, true));
    set(*desktop, appearance, "reduced-motion", 0u);
    EXPECT_TRUE(becomes(motion, false));
    set(*desktop, appearance, "reduced-motion", "much");
    EXPECT_TRUE(becomes(motion, true));
    EXPECT_EQ(changes, 7);
}

TEST_F(DesktopMotionTest, HearsAPortalThatComesLateWhicheverDesktopItIsOf) {
    const DesktopMotion motion(connection("program"));
    EXPECT_FALSE(motion.isReduced());
    const auto late = portal("late", {{kde, {{"AnimationDurationFactor", "0"}}}});
    EXPECT_TRUE(becomes(motion, true));
    // Others take its place.
    const auto second = portal("second", {});
    EXPECT_TRUE(becomes(motion, false));
    const auto third = portal("third", {{appearance, {{"reduced-motion", 1u}}}});
    EXPECT_TRUE(becomes(motion, true));
    const DesktopMotion alone(QDBusConnection("never connected"));
    EXPECT_FALSE(alone.isReduced());
}

} // namespace
} // namespace morvane
