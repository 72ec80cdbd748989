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
    const auto crosses = [](QWidget &widget, QEvent::Type type) { send(widget, QEvent(type)); };

    crosses(menu, QEvent::Leave);
    send(*submenu, QEnterEvent({}, {}, {}));
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(menu.isVisible());
    crosses(*submenu, QEvent::Leave);
    send(origin, QEnterEvent({}, {}, {}));
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(menu.isVisible());
    crosses(origin, QEvent::Leave);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QCoreApplication::sendEvent(&menu, &down);
    scheduler.advance(Seconds(60));
    EXPECT_TRUE(menu.isVisible());
    crosses(origin, QEvent::Leave);
    scheduler.advance(Seconds(2));
    EXPECT_FALSE(menu.isVisible());
}

} // namespace
} // namespace morvane
