#pragma once

#include "Presentation/PixelFrame.h"

/// The frames of the mascot, 8 by 8 each.
namespace morvane::PixelArt {

const PixelFrame &alienA();
const PixelFrame &alienDone(); ///< arms up

} // namespace morvane::PixelArt
