#pragma once

#include "Platform/ForegroundApplication.h"

#include <cstdint>

namespace morvane {

class X11Connection;

/// Follows the window that the window manager calls the active one. Owned by the application; the
/// connection must outlive it.
class ActiveWindow : public ForegroundApplication {
    Q_OBJECT

public:
    explicit ActiveWindow(X11Connection &x11);

private:
    void read();
    std::uint32_t activeWindow() const;
    bool hasLeft() const;
    bool isOverlay(std::uint32_t window) const;
    QString windowClass(std::uint32_t window) const;

    X11Connection &m_x11;
    std::uint32_t m_last =
        0; ///< the window that was active last, until a person leaves it for none
};

} // namespace morvane
