#include "App/PlatformServices.h"

#include "Support/FakeProcesses.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

class MortalProcesses : public FakeProcesses {
public:
    explicit MortalProcesses(bool &alive) : m_alive(alive) {}
    ~MortalProcesses() override { m_alive = false; }

private:
    bool &m_alive;
};

/// A pool that is at work until its end.
class BusyPool : public BackgroundPool {
public:
    explicit BusyPool(std::function<void()> work) : m_work(std::move(work)) {}
    ~BusyPool() override { m_work(); }
    void run(std::function<void()>) override {}

private:
    std::function<void()> m_work;
};

// The search for sessions asks for processes.
TEST(PlatformServices, WhatThePoolCallsIsThereUntilItsEnd) {
    bool alive = true;
    bool wasAlive = false;
    {
        PlatformServices services;
        services.processes = std::make_unique<MortalProcesses>(alive);
        services.background = std::make_unique<BusyPool>([&] { wasAlive = alive; });
    }
    EXPECT_TRUE(wasAlive);
}

} // namespace
} // namespace morvane
