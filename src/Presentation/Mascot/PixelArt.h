#pragma once

#include "Presentation/Mascot/PixelFrame.h"

/// The frames of the mascot, 8 by 8 each, and the sequences in which they are shown.
namespace morvane::PixelArt {

const PixelFrame &alienA();
const PixelFrame &alienB();    ///< the other step
const PixelFrame &alienDone(); ///< arms up

const QList<PixelFrame> &working();
const QList<PixelFrame> &needsInput();
const QList<PixelFrame> &done();
const QList<PixelFrame> &idle();

} // namespace morvane::PixelArt
