#pragma once

#include "Platform/PointerMonitor.h"

namespace morvane {

/// Emits its signal only when a test does so, and counts its users.
class FakePointerMonitor : public PointerMonitor {
public:
    void activate() override { ++users; }
    void deactivate() override { --users; }

    int users = 0;
};

} // namespace morvane
