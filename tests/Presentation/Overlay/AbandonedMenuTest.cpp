#include "Presentation/Overlay/AbandonedMenu.h"

#include "Support/ManualScheduler.h"
#include "Support/SendEvent.h"

#include <QEnterEvent>
#include <QKeyEvent>
#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(AbandonedMenuTest, ClosesOnceThePointerHasLeftAllOfIt) {
    ManualScheduler scheduler;
    QWidget origin;
    QMenu menu;
    QMenu *submenu = menu.addMenu("more");
    menu.popup({});
    const AbandonedMenu watch(menu, origin, scheduler);
    send(menu, QEvent(QEvent::Leave));
    send(*submenu, QEnterEvent({}, {}, {}));
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(menu.isVisible());
    send(*submenu, QEvent(QEvent::Leave));
    send(origin, QEnterEvent({}, {}, {}));
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(menu.isVisible());
    send(origin, QEvent(QEvent::Leave));
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(menu.isVisible());
}

} // namespace
} // namespace morvane
