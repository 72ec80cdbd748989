#include "Platform/Linux/LowPriorityPool.h"

#include "Core/Adapters/ClaudeTranscript.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace morvane {
namespace {

TEST(LowPriorityPool, RunsEverythingAndGivesWay) {
    std::atomic<int> done = 0;
    std::atomic<int> eager = 0;
    LowPriorityPool pool;
    for (int work = 0; work < 1000; ++work) {
        pool.run([&] {
            eager += ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid())) < 10 ? 1 : 0;
            ++done;
        });
    }
    EXPECT_TRUE(waitUntil([&] { return done == 1000; }));
    EXPECT_EQ(eager, 0);
}

TEST(LowPriorityPool, DoesNotLetOneThatHangsHoldUpTheOthers) {
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::atomic<int> done = 0;
    LowPriorityPool pool;
    pool.run([&] { released.wait(); });
    for (int work = 0; work < 10; ++work) {
        pool.run([&] { ++done; });
    }
    EXPECT_TRUE(waitUntil([&] { return done == 10; }));
    release.set_value();
}

TEST(LowPriorityPool, WaitsAtItsEndForWhatRunsAndDropsTheRest) {
    std::atomic<int> begun = 0;
    std::atomic<int> done = 0;
    {
        LowPriorityPool pool;
        for (int work = 0; work < 100; ++work) {
            pool.run([&] {
                ++begun;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                ++done;
            });
        }
        EXPECT_TRUE(waitUntil([&] { return begun > 0; }));
    }
    EXPECT_EQ(begun, done);
}

TEST(LowPriorityPool, HandsResultsToAnOwnerThatIsStillThere) {
    ManualScheduler scheduler;
    LowPriorityPool pool;
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

/// Reads in the background, of a file that its agent goes on writing, cutting and replacing.
TEST(LowPriorityPool, ReadsTranscriptsWhileTheyChange) {
    const TemporaryHome home;
    ManualScheduler scheduler;
    LowPriorityPool pool;
    const QByteArray line =
        R"({"type":"assistant","message":{"model":"claude-a","usage":{"input_tokens":5}}})"
        "\n";
    const QByteArray lines = line.repeated(5000);
    const QString path = home.write("t.jsonl", lines);
    std::atomic<bool> ending = false;
    std::thread agent([&] {
        while (!ending) {
            QFile file(path);
            file.open(QIODevice::ReadWrite);
            file.resize(7);
            file.write(lines);
        }
    });

    // Each read tells the model or, from what was left of the file just then, nothing.
    QObject owner;
    int reads = 0;
    const auto use = [&](const TranscriptInfo &info) {
        EXPECT_EQ(info.model.value_or("a"), "a");
        EXPECT_EQ(info.contextTokens.value_or(5), 5);
        reads += info.model ? 1 : 0;
    };
    EXPECT_TRUE(waitUntil([&] {
        for (int read = 0; read < 8; ++read) {
            pool.compute(
                [path] { return TranscriptReader::readTail(path, ClaudeTranscript::takeLine); },
                scheduler, &owner, use);
        }
        scheduler.runPosted();
        return reads > 50;
    }));
    ending = true;
    agent.join();
    scheduler.runPosted();
}

} // namespace
} // namespace morvane
