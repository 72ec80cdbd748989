#include "Platform/Linux/LowPriorityPool.h"

#include "Support/ManualScheduler.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>

namespace morvane {
namespace {

TEST(LowPriorityPool, RunsEverythingAndGivesWayAlsoWhereSomethingHangs) {
    std::promise<void> release;
    std::atomic<int> done = 0;
    std::atomic<int> eager = 0;
    LowPriorityPool pool(&std::abort);
    pool.run([released = release.get_future().share()] { released.wait(); });
    for (int work = 0; work < 1000; ++work) {
        pool.run([&] {
            eager += ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid())) < 10 ? 1 : 0;
            ++done;
        });
    }
    EXPECT_TRUE(waitUntil([&] { return done == 1000; }));
    EXPECT_EQ(eager, 0);
    release.set_value();
}

TEST(LowPriorityPool, WaitsAtItsEndForWhatRunsAndDropsTheRest) {
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::atomic<int> begun = 0;
    std::atomic<int> done = 0;
    {
        LowPriorityPool pool(&std::abort);
        for (int work = 0; work < 10; ++work) {
            pool.run([&] {
                ++begun;
                released.wait();
                ++done;
            });
        }
        // The work that is running goes on only once this work has been dropped.
        const auto drop = [&release](void *) { release.set_value(); };
        pool.run([dropped = std::shared_ptr<void>(nullptr, drop)] {
            ADD_FAILURE() << "there were others before it";
        });
        EXPECT_TRUE(waitUntil([&] { return begun > 0; }));
    }
    EXPECT_EQ(begun, done);
}

TEST(LowPriorityPool, GivesUpOnWhatDoesNotEnd) {
    std::promise<void> begun;
    std::promise<void> givenUp;
    const std::shared_future<void> end = givenUp.get_future().share();
    LowPriorityPool pool([&] { givenUp.set_value(); }, std::chrono::milliseconds(0));
    pool.run([&begun, end] {
        begun.set_value();
        end.wait(); // for ever, if it isn't given up
    });
    begun.get_future().wait();
}

TEST(LowPriorityPool, HandsResultsToAnOwnerThatIsStillThere) {
    ManualScheduler scheduler;
    LowPriorityPool pool(&std::abort);
    QObject owner;
    auto goner = std::make_unique<QObject>();
    int sum = 0;
    for (int work = 1; work <= 100; ++work) {
        pool.compute([work] { return work; }, scheduler, &owner,
                     [&](int result) { sum += result; });
        pool.compute([work] { return work; }, scheduler, goner.get(),
                     [](int) { ADD_FAILURE() << "nobody is there to take this"; });
    }
    goner.reset();
    EXPECT_TRUE(waitUntil([&] {
        scheduler.runPosted();
        return sum == 5050;
    }));
}

} // namespace
} // namespace morvane
