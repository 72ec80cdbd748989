#pragma once

#include "App/PlatformServices.h"

#include <functional>

namespace morvane {

/// The one place that knows which platform this is. Called once, on the main thread, when the
/// application object exists. When the services are destroyed, they may call `endAsItIs`, on the
/// same thread, to end the process at once if some of their work can't be waited for.
PlatformServices choosePlatform(std::function<void()> endAsItIs);

/// True when a screen can be reached. Must be called before the application object is made, which
/// would end the process without a screen.
bool hasScreen();

/// True when the application object shows its windows on a screen.
bool isOnScreen();

} // namespace morvane
