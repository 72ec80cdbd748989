#include "App/PlatformServices.h"

#include "Support/FakeProcesses.h"
#include "Support/ManualPool.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

/// Says when it ends.
template <typename Service>
class Mortal : public Service {
public:
    Mortal(QString &ends, const char *name) : m_ends(ends), m_name(name) {}
    ~Mortal() override { m_ends += m_name; }

private:
    QString &m_ends;
    const char *m_name;
};

// The search for sessions, which the pool is at until its end, asks for processes.
TEST(PlatformServices, WhatThePoolCallsIsThereUntilItsEnd) {
    QString ends;
    {
        PlatformServices services;
        services.processes = std::make_unique<Mortal<FakeProcesses>>(ends, " processes");
        services.background = std::make_unique<Mortal<ManualPool>>(ends, "pool");
    }
    EXPECT_EQ(ends, "pool processes");
}

} // namespace
} // namespace morvane
