#pragma once

#include "App/PlatformServices.h"

#include <functional>

namespace morvane {

/// The one place that knows which platform this is. Called once, on the main thread, when the
/// application object exists. At the end of the services `endAsItIs` may be called, on the same
/// thread, to end the process where it stands: something of theirs can't be waited for.
PlatformServices choosePlatform(std::function<void()> endAsItIs);

/// True when a screen can be reached. To be asked before the application object is made, which
/// would end the process where there is none.
bool hasScreen();

/// True when the application object shows what it shows on one.
bool isOnScreen();

} // namespace morvane
