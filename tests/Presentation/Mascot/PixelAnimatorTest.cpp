#include "Presentation/Mascot/PixelAnimator.h"

#include "Presentation/Mascot/PixelArt.h"
#include "Presentation/PanelFixture.h"

namespace morvane {
namespace {

class PixelAnimatorTest : public PanelFixture {
protected:
    PixelAnimatorTest() { window.resize(200, 100); }

    PixelAnimator &mascot(std::optional<SessionState> state, std::optional<Date> since = {}) {
        mascots.push_back(std::make_unique<PixelAnimator>(timeline, scheduler, motion, 2, &window));
        mascots.back()->resize(mascots.back()->sizeHint());
        mascots.back()->setMode({state}, since);
        mascots.back()->show();
        return *mascots.back();
    }

    void show() {
        window.show();
        QCoreApplication::processEvents();
    }

    bool changesWithin(const PixelAnimator &shown, Seconds length) {
        const PixelFrame before = shown.frame();
        for (Seconds passed(0); passed < length; passed += Seconds(0.05)) {
            scheduler.advance(Seconds(0.05));
            if (shown.frame() != before) {
                return true;
            }
        }
        return false;
    }

    QWidget window;
    std::vector<std::unique_ptr<PixelAnimator>> mascots;
};

TEST_F(PixelAnimatorTest, AStepMayDropThoseThatFollowIt) {
    const PixelTimeline::Interval interval(100);
    QString steps;
    std::optional<Task> second;
    const Task first = timeline.follow(interval, [&] {
        steps += '1';
        second.reset();
    });
    second = timeline.follow(interval, [&] { steps += '2'; });
    const Task third = timeline.follow(interval, [&] { steps += '3'; });
    scheduler.advance(Seconds(0.11));
    EXPECT_EQ(steps, "13");
}

TEST_F(PixelAnimatorTest, AFinishBlinksForAMomentAndThenRests) {
    show();
    PixelAnimator &shown = mascot(SessionState::done, scheduler.now());
    scheduler.advance(Seconds(2.4));
    EXPECT_TRUE(changesWithin(shown, Seconds(0.5)));
    scheduler.advance(Seconds(0.6));
    EXPECT_EQ(shown.frame(), PixelArt::alienDone());
    EXPECT_EQ(ticksWithin(Seconds(10)), 0);

    shown.setMode({SessionState::done}, scheduler.now() - Seconds(10));
    EXPECT_EQ(shown.frame(), PixelArt::alienDone());
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);

    // The row is hidden while it would blink.
    shown.setMode({SessionState::done}, scheduler.now());
    window.hide();
    EXPECT_EQ(ticksWithin(Seconds(4)), 0);
    show();
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
}

TEST_F(PixelAnimatorTest, TicksOnceForAllInStepAndOnlyWhileSomethingMovesInSight) {
    mascot(SessionState::failed);
    mascot(SessionState::idle);
    mascot({});
    show();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);

    const PixelAnimator &first = mascot(SessionState::working);
    for (int count = 1; count < 30; ++count) {
        scheduler.advance(Seconds(0.11));
        mascot(SessionState::working);
    }
    EXPECT_LE(ticksWithin(Seconds(10)), 40);
    EXPECT_GE(ticksWithin(Seconds(3)), 9);
    for (int sample = 0; sample < 20; ++sample) {
        scheduler.advance(Seconds(0.05));
        EXPECT_EQ(mascots.back()->frame(), first.frame()) << sample;
    }

    // Once the only mascot in sight is gone, nothing ticks on.
    for (auto &each : mascots) {
        each->move(500, 500);
    }
    mascots.back()->move(10, 10);
    scheduler.advance(Seconds(1));
    EXPECT_GT(ticksWithin(Seconds(3)), 0);
    mascots.pop_back();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);
    mascots.back()->move(10, 10);
    QCoreApplication::processEvents();
    EXPECT_TRUE(changesWithin(*mascots.back(), Seconds(1)));
    window.hide();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);
}

TEST_F(PixelAnimatorTest, StandsStillWhereLessMotionIsWanted) {
    motion.setReduced(true);
    PixelAnimator &working = mascot(SessionState::working);
    const PixelAnimator &finished = mascot(SessionState::done, scheduler.now());
    show();
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
    EXPECT_EQ(working.frame(), PixelArt::alienA());
    EXPECT_EQ(finished.frame(), PixelArt::alienDone());
    motion.setReduced(false);
    EXPECT_TRUE(changesWithin(working, Seconds(1)));
    motion.setReduced(true);
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
}

} // namespace
} // namespace morvane
