#pragma once

#include "Core/SessionState.h"
#include "Presentation/PixelFrame.h"

#include <QColor>

#include <optional>

namespace morvane {

/// How the mascot shows a state: by its pose and its colour. A plain value.
struct StateMark {
    PixelFrame frame;
    QColor color;

    /// No state looks like an idle one.
    static StateMark of(std::optional<SessionState> state);
};

} // namespace morvane
