#pragma once

#include "Platform/ForegroundApplication.h"

#include <cstdint>

namespace morvane {

class X11Connection;

/// Follows the window manager's active window. Owned by the application; the connection must
/// outlive it.
class ActiveWindow : public ForegroundApplication {
    Q_OBJECT

public:
    explicit ActiveWindow(X11Connection &x11);

private:
    void read();
    std::uint32_t activeWindow() const;
    std::uint32_t desktop() const;
    bool hasLeft() const;
    bool isOverlay(std::uint32_t window) const;
    QString windowClass(std::uint32_t window) const;

    X11Connection &m_x11;
    std::uint32_t m_last;    ///< the last active window; none after leaving it for an empty desktop
    std::uint32_t m_desktop; ///< the desktop where that was
};

} // namespace morvane
