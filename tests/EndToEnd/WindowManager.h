#pragma once

#include <array>
#include <iosfwd>

namespace morvane {

/// A window manager that tests know how to start on a display of their own. A plain value.
struct WindowManager {
    const char *name;
    const char *command;  ///< "%1" stands for the settings' file
    const char *settings; ///< may be empty

    /// Windows fill the screen from edge to edge on this one.
    static const WindowManager openbox;

    /// Follows the monitors as they come and go.
    static const WindowManager metacity;

    static const std::array<WindowManager, 4> all;
};

std::ostream &operator<<(std::ostream &stream, const WindowManager &manager);

} // namespace morvane
