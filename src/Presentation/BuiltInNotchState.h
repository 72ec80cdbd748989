#pragma once

namespace morvane {

/// What stands in the notch. Kept by the presenter, whose surface shows it.
struct BuiltInNotchState {
    enum class Mode {
        compact,  ///< the notch, a little wider, with the status on either side
        expanded, ///< the panel
    };
    Mode mode = Mode::compact;
    bool isHovering = false; ///< the pointer was on what the surface shows when last looked for
};

} // namespace morvane
