#include "App/StatusItem.h"

#include "App/AppFixture.h"
#include "Support/EventBuilder.h"

#include <QSystemTrayIcon>

namespace morvane {
namespace {

class StatusItemTest : public ControllerFixture {
protected:
    void apply(CanonicalEvent kind, const char *session) {
        store.apply(EventBuilder(kind).in(QLatin1String(session)));
    }

    QSystemTrayIcon *shown() const { return item.findChild<QSystemTrayIcon *>(); }

    QRgb color() const { return shown()->icon().pixmap(22, 22).toImage().pixel(4, 11); }
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

TEST_F(StatusItemTest, HasTheColorOfTheStateAndIsDrawnAnewOnlyForAnother) {
    constexpr QRgb red = 0xffff453a;
    host.setPresent(true);
    EXPECT_EQ(color(), 0xff8e8e93);
    apply(CanonicalEvent::promptSubmit, "a");
    const qint64 atWork = picture();
    apply(CanonicalEvent::toolUse, "a");
    apply(CanonicalEvent::promptSubmit, "b");
    EXPECT_EQ(picture(), atWork);
    apply(CanonicalEvent::needsInput, "b");
    EXPECT_EQ(color(), red);
    settings.setShowMenuBarIcon(false);
    settings.setShowMenuBarIcon(true);
    EXPECT_EQ(color(), red);
}

} // namespace
} // namespace morvane
