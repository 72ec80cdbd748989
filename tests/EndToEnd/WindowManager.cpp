#include "EndToEnd/WindowManager.h"

#include <ostream>

namespace morvane {

namespace {

/// Without decorations a window fills the screen to its edges.
constexpr const char *openboxSettings =
    R"(<openbox_config xmlns="http://openbox.org/3.4/rc"><applications>
<application class="*"><decor>no</decor><maximized>yes</maximized></application>
</applications></openbox_config>)";

// It takes a file without this comment for one of an older version.
constexpr const char *i3Settings = R"(# i3 config file (v4)
font pango:monospace 8
)";

} // namespace

constexpr WindowManager WindowManager::openbox{"openbox", "openbox --sm-disable --config-file %1",
                                               openboxSettings};

constexpr WindowManager WindowManager::metacity{"metacity", "metacity --compositor=none", ""};

constexpr std::array<WindowManager, 4> WindowManager::all{
    openbox,
    WindowManager{"xfwm4", "xfwm4 --compositor=off", ""},
    metacity,
    WindowManager{"i3", "i3 -c %1", i3Settings},
};

std::ostream &operator<<(std::ostream &stream, const WindowManager &manager) {
    return stream << manager.name;
}

} // namespace morvane
