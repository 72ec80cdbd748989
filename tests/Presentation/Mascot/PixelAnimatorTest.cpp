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

TEST_F(PixelAnimatorTest, StepsWithTheWallClockSoThatAllOfAStateAreInStep) {
    for (const auto &[state, interval] :
         {std::pair(SessionState::working, 0.3), std::pair(SessionState::needsInput, 0.45),
          std::pair(SessionState::done, 0.25)}) {
        mascots.clear();
        show();
        const PixelAnimator &first = mascot(state, scheduler.now());
        scheduler.advance(Seconds(0.11));
        const PixelAnimator &second = mascot(state, scheduler.now());
        int steps = 0;
        for (int sample = 0; sample < 50; ++sample) {
            const PixelFrame before = first.frame();
            scheduler.advance(Seconds(0.05));
            steps += first.frame() != before ? 1 : 0;
            ASSERT_EQ(first.frame(), second.frame()) << interval << ' ' << sample;
        }
        EXPECT_NEAR(steps, 2.5 / interval, 1);
    }
}

TEST_F(PixelAnimatorTest, AFinishBlinksForAMomentAndThenRests) {
    show();
    PixelAnimator &shown = mascot(SessionState::done, scheduler.now());
    scheduler.advance(Seconds(2.4));
    EXPECT_TRUE(changesWithin(shown, Seconds(0.5)));
    scheduler.advance(Seconds(0.6));
    EXPECT_EQ(shown.frame(), PixelArt::alienDone());
    EXPECT_EQ(ticksWithin(Seconds(10)), 0);

    shown.setMode({SessionState::working}, scheduler.now());
    shown.setMode({SessionState::done}, scheduler.now());
    EXPECT_TRUE(changesWithin(shown, Seconds(0.5)));
    scheduler.advance(Seconds(3));
    shown.setMode({SessionState::done}, scheduler.now());
    EXPECT_TRUE(changesWithin(shown, Seconds(0.5)));

    shown.setMode({SessionState::done}, scheduler.now() - Seconds(10));
    EXPECT_EQ(shown.frame(), PixelArt::alienDone());
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);

    // A row that nobody looked at meanwhile, and one whose moment nobody knows.
    shown.setMode({SessionState::done}, scheduler.now());
    window.hide();
    EXPECT_EQ(ticksWithin(Seconds(4)), 0);
    show();
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
    shown.setMode({SessionState::done}, {});
    EXPECT_TRUE(changesWithin(shown, Seconds(0.5)));
    scheduler.advance(Seconds(3));
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
}

TEST_F(PixelAnimatorTest, TicksOnceForAllAndOnlyWhileSomethingMovesInSight) {
    for (const auto state : {SessionState::failed, SessionState::idle}) {
        mascot(state);
    }
    mascot({});
    show();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);

    for (int count = 0; count < 30; ++count) {
        mascot(SessionState::working);
    }
    EXPECT_LE(ticksWithin(Seconds(10)), 40);
    EXPECT_GE(ticksWithin(Seconds(3)), 9);

    // All but one have gone out of sight, and that one is hidden: nothing ticks on.
    for (auto &each : mascots) {
        each->move(500, 500);
    }
    mascots.back()->move(10, 10);
    scheduler.advance(Seconds(1));
    EXPECT_GT(ticksWithin(Seconds(3)), 0);
    mascots.back()->hide();
    EXPECT_EQ(ticksWithin(Seconds(3)), 0);
    mascots.back()->show();
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
    PixelAnimator &asking = mascot(SessionState::needsInput);
    const PixelAnimator &finished = mascot(SessionState::done, scheduler.now());
    show();
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
    EXPECT_EQ(working.frame(), PixelArt::alienA());
    EXPECT_EQ(asking.frame(), PixelArt::alienA());
    EXPECT_EQ(finished.frame(), PixelArt::alienDone());
    motion.setReduced(false);
    EXPECT_TRUE(changesWithin(working, Seconds(1)));
    EXPECT_TRUE(changesWithin(asking, Seconds(1)));
    motion.setReduced(true);
    EXPECT_EQ(ticksWithin(Seconds(2)), 0);
}

TEST_F(PixelAnimatorTest, RepaintsNothingButItself) {
    const PixelAnimator &shown = mascot(SessionState::working);
    QWidget neighbour(&window);
    neighbour.setGeometry(shown.width(), 0, 50, 50);
    show();
    PaintWatch own(*mascots.back());
    PaintWatch around(window);
    PaintWatch beside(neighbour);
    ASSERT_TRUE(changesWithin(shown, Seconds(1)));
    QCoreApplication::processEvents();
    EXPECT_FALSE(own.painted.isEmpty());
    EXPECT_TRUE(beside.painted.isEmpty());
    EXPECT_TRUE((around.painted - shown.geometry()).isEmpty());
}

} // namespace
} // namespace morvane
