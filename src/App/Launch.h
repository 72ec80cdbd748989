#pragma once

#include "App/PlatformServices.h"

#include <functional>

namespace morvane {

/// Runs the program to its end, and returns its exit status. `adjust` is called once with what was
/// chosen for this platform, before anything uses it.
int launch(int argc, char **argv, const std::function<void(PlatformServices &)> &adjust = {});

} // namespace morvane
