#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <optional>
#include <thread>

namespace morvane {

/// Waits for something that another thread or process does, as long as it takes on a slow machine.
/// False when it hasn't come about after half a minute.
template <typename Condition>
bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// The same, while the test's own event loop runs.
template <typename Condition>
bool becomesTrue(Condition condition) {
    return waitUntil([&] {
        // Lets the loop block as in a program: events that came with a reply are read only before
        // it does.
        QTimer::singleShot(1, [] {});
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return condition();
    });
}

/// The value that a call passes to its callback, which it must not call before it returns.
template <typename Told, typename Call>
std::optional<Told> toldBy(const Call &call) {
    std::optional<Told> result;
    call([&](const Told &told) { result = told; });
    EXPECT_FALSE(result.has_value());
    EXPECT_TRUE(becomesTrue([&] { return result.has_value(); }));
    return result;
}

/// The result of a call that blocks, on a thread of its own, while the test's event loop runs.
template <typename Call>
auto onAnotherThread(const Call &call) {
    auto result = std::async(std::launch::async, call);
    EXPECT_TRUE(becomesTrue(
        [&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return result.get();
}

} // namespace morvane
