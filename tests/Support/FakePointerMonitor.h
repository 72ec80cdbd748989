#pragma once

#include "Platform/PointerMonitor.h"

namespace morvane {

/// Tells of the pointer when a test says so, and knows how many listen.
class FakePointerMonitor : public PointerMonitor {
public:
    void activate() override { ++users; }
    void deactivate() override { --users; }

    int users = 0;
};

} // namespace morvane
