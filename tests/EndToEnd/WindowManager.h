#pragma once

#include <array>
#include <ostream>

namespace morvane {

/// A window manager that tests know how to start on a display of their own. A plain value.
struct WindowManager {
    struct File {
        const char *path = nullptr;
        const char *content = nullptr;
    };

    const char *name;
    const char *command;
    std::array<File, 2> files; ///< its settings, in the person's home; fewer than two leave nulls

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
    "openbox",
    "openbox --sm-disable",
    {{{".config/openbox/rc.xml",
       R"(<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application class="*"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>)"}}}};

inline constexpr WindowManager WindowManager::metacity{
    "metacity", "metacity --compositor=none", {}};

inline constexpr std::array<WindowManager, 4> WindowManager::all{
    openbox,
    // With its usual keys and decorations it would take twice as long to start: it asks for
    // thousands of keys one by one, and looks for each picture in six formats, several times.
    WindowManager{"xfwm4",
                  "xfwm4 --compositor=off",
                  {{{".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml",
                     R"(<?xml version="1.0"?><channel name="xfce4-keyboard-shortcuts" version="1.0">
<property name="xfwm4" type="empty"><property name="custom" type="empty">
<property name="override" type="bool" value="true"/></property></property></channel>)"},
                    {".themes/Default/xfwm4/themerc", ""}}}},
    metacity,
    // i3 takes a file without this comment for one of an older version.
    WindowManager{
        "i3", "i3", {{{".config/i3/config", "# i3 config file (v4)\nfont pango:monospace 8\n"}}}}};

} // namespace morvane
