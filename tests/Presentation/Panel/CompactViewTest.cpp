#include "Presentation/Panel/CompactView.h"

#include "Presentation/PanelFixture.h"
#include "Presentation/Style/TextLabel.h"

#include <QSignalSpy>

namespace morvane {
namespace {

class CompactViewTest : public PanelFixture {
protected:
    CompactViewTest() {
        motion.setReduced(true);
        view.show();
    }

    /// What stands beside the mascot, as one text.
    QString shown() {
        view.refresh();
        return textsIn<TextLabel>(view).join(u' ');
    }

    CompactView view{context, nullptr};
};

TEST_F(CompactViewTest, TellsHowLongTheFirstSessionIsAtItAndHowManyThereAre) {
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(view.accessibleName(), "no sessions");
    apply(Event::sessionStart, "open");
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(view.accessibleName(), "idle");

    apply(Event::promptSubmit, "a");
    EXPECT_EQ(shown(), "<1m");
    EXPECT_EQ(view.accessibleName(), "1 session, working, <1m");
    scheduler.advance(Seconds(300));
    apply(Event::promptSubmit, "b");
    apply(Event::needsInput, "a");
    scheduler.advance(Seconds(60));
    EXPECT_EQ(shown(), "1m ×2");
    EXPECT_EQ(view.accessibleName(), "2 sessions, needs your input, 1m");
    for (const QString text : {"2 sessions, needs your input, 1m", "needs your input"}) {
        EXPECT_TRUE(isReadOut(view, text)) << text.toStdString();
    }
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->childCount(), 0) << "read twice";
}

TEST_F(CompactViewTest, RedrawsTheTimeOnceAMinuteAndAsksForRoom) {
    apply(Event::promptSubmit);
    scheduler.advance(Seconds(20));
    view.refresh();
    QSignalSpy resized(&view, &CompactView::contentResized);
    EXPECT_LE(ticksWithin(Seconds(39.9)), 1);
    EXPECT_EQ(resized.count(), 0);
    scheduler.advance(Seconds(0.2));
    EXPECT_EQ(resized.count(), 1);
    EXPECT_EQ(view.accessibleName(), "1 session, working, 1m");
    view.hide();
    scheduler.advance(Seconds(120));
    EXPECT_EQ(resized.count(), 1);
}

TEST_F(CompactViewTest, CountsTheSecondsByTheMascotsStepsAloneAndElseTellsNone) {
    motion.setReduced(false);
    apply(Event::promptSubmit);
    EXPECT_EQ(shown(), "0s");
    const int width = view.sizeHint().width();
    EXPECT_LE(ticksWithin(Seconds(30.4)), 103);
    EXPECT_EQ(textsIn<TextLabel>(view), QStringList{"30s"});
    EXPECT_EQ(view.sizeHint().width(), width);
    apply(Event::turnFailed);
    EXPECT_EQ(shown(), "<1m");
    EXPECT_LE(ticksWithin(Seconds(50)), 1);
    EXPECT_EQ(shown(), "<1m");
}

TEST_F(CompactViewTest, AMilestoneTakesTheirPlaceForAMoment) {
    apply(Event::promptSubmit, "a");
    apply(Event::promptSubmit, "b");
    usage.tell(80, 96);
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(view.accessibleName(),
              "2 sessions, working, <1m, Claude weekly usage reached 95 percent");
    EXPECT_TRUE(isReadOut(view, "Claude weekly usage reached 95 percent"));
    scheduler.advance(Seconds(6.1));
    EXPECT_EQ(shown(), "<1m ×2");
}

} // namespace
} // namespace morvane
