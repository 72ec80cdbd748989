#pragma once

#include "Core/Sessions/SessionState.h"
#include "Presentation/Mascot/PixelFrame.h"

#include <QColor>
#include <QList>

#include <chrono>
#include <optional>

namespace morvane {

/// How the mascot shows a state: by its frames, their pace and its colour. A plain value.
struct PixelSequence {
    QList<PixelFrame> frames;              ///< a single one stands still
    std::chrono::milliseconds interval{0}; ///< how long each is shown
    QColor color;

    /// Without a state the mascot looks idle.
    static PixelSequence of(std::optional<SessionState> state);

    /// The single frame that remains when the mascot has come to rest.
    static PixelSequence atRest(std::optional<SessionState> state);
};

} // namespace morvane
