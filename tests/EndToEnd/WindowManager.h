#pragma once

#include <array>
#include <ostream>

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

    friend std::ostream &operator<<(std::ostream &stream, const WindowManager &manager) {
        return stream << manager.name;
    }
};

// Without decorations a window fills the screen to its edges.
inline constexpr WindowManager WindowManager::openbox{
    "openbox", "openbox --sm-disable --config-file %1",
    R"(<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application class="*"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>)"};

inline constexpr WindowManager WindowManager::metacity{"metacity", "metacity --compositor=none",
                                                       ""};

// i3 takes a file without this comment for one of an older version.
inline constexpr std::array<WindowManager, 4> WindowManager::all{
    openbox, WindowManager{"xfwm4", "xfwm4 --compositor=off", ""}, metacity,
    WindowManager{"i3", "i3 -c %1", "# i3 config file (v4)\nfont pango:monospace 8\n"}};

} // namespace morvane
