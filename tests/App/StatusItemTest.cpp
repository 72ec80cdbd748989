#include "App/StatusItem.h"

#include "App/AppFixture.h"
#include "Support/EventBuilder.h"

#include <QMenu>
#include <QSet>
#include <QSystemTrayIcon>
#include <gtest/gtest.h>

namespace morvane {
namespace {

class StatusItemTest : public ControllerFixture {
protected:
    void apply(CanonicalEvent kind, const char *session) {
        store.apply(EventBuilder(kind).in(QLatin1String(session)));
    }

    QSystemTrayIcon *shown() const { return item.findChild<QSystemTrayIcon *>(); }

    QColor color() const { return shown()->icon().pixmap(22, 16).toImage().pixelColor(11, 9); }
    qint64 picture() const { return shown()->icon().cacheKey(); }

    FakeStatusItemHost host;
    QMenu menu;
    StatusItem item{store, settings, host, menu};
};

TEST_F(StatusItemTest, IsThereWhileItIsWantedAndHasAPlace) {
    EXPECT_FALSE(shown());
    host.setPresent(true);
    ASSERT_TRUE(shown());
    EXPECT_TRUE(shown()->isVisible());
    EXPECT_EQ(shown()->contextMenu(), &menu);
    settings.setShowMenuBarIcon(false);
    EXPECT_FALSE(shown());
    host.setPresent(false);
    host.setPresent(true);
    EXPECT_FALSE(shown());
    settings.setShowMenuBarIcon(true);
    EXPECT_TRUE(shown());
    host.setPresent(false);
    EXPECT_FALSE(shown());
}

TEST_F(StatusItemTest, IsActivatedByAPlainClickAlone) {
    int activations = 0;
    QObject::connect(&item, &StatusItem::activated, [&] { ++activations; });
    host.setPresent(true);
    ASSERT_TRUE(shown());
    // A right click opens the menu; a double click has begun with a plain one.
    for (const auto reason : {QSystemTrayIcon::Context, QSystemTrayIcon::DoubleClick,
                              QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Unknown}) {
        emit shown()->activated(reason);
        EXPECT_EQ(activations, 0) << reason;
    }
    emit shown()->activated(QSystemTrayIcon::Trigger);
    EXPECT_EQ(activations, 1);
}

TEST_F(StatusItemTest, IsDrawnAnewOnlyForAnotherState) {
    host.setPresent(true);
    const QColor resting = color();
    apply(CanonicalEvent::promptSubmit, "a");
    const QColor working = color();
    const qint64 atWork = picture();
    apply(CanonicalEvent::toolUse, "a");
    apply(CanonicalEvent::promptSubmit, "b");
    EXPECT_EQ(picture(), atWork);
    apply(CanonicalEvent::turnEnd, "a");
    const QColor done = color();
    apply(CanonicalEvent::turnFailed, "b");
    const QColor failed = color();
    apply(CanonicalEvent::needsInput, "b");
    const QColor asking = color();

    const QSet<QRgb> all{resting.rgb(), working.rgb(), done.rgb(), failed.rgb(), asking.rgb()};
    EXPECT_EQ(all.size(), 5);

    apply(CanonicalEvent::sessionEnd, "a");
    apply(CanonicalEvent::sessionEnd, "b");
    EXPECT_EQ(color(), resting);

    apply(CanonicalEvent::needsInput, "a");
    settings.setShowMenuBarIcon(false);
    settings.setShowMenuBarIcon(true);
    EXPECT_EQ(color(), asking);
}

} // namespace
} // namespace morvane
