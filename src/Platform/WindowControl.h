#pragma once

namespace morvane {

/// What this program may do with the windows of others. Main thread.
class WindowControl {
public:
    WindowControl() = default;
    WindowControl(const WindowControl &) = delete;
    WindowControl &operator=(const WindowControl &) = delete;
    virtual ~WindowControl() = default;

    /// True when the desktop lets this program give the focus to another program's window.
    virtual bool canFocusWindows() const = 0;
};

} // namespace morvane
