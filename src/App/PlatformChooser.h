#pragma once

#include "App/PlatformServices.h"

namespace morvane {

/// The one place that knows which platform this is. Called once, on the main thread, when the
/// application object exists.
PlatformServices choosePlatform();

/// True when a screen can be reached. To be asked before the application object is made, which
/// would end the process where there is none.
bool hasScreen();

} // namespace morvane
