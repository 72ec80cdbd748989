#pragma once

#include "Platform/WindowControl.h"

namespace morvane {

class X11Connection;

/// Other programs' windows, as far as the window manager offers them. Owned by the application;
/// the connection must outlive it.
class X11WindowControl : public WindowControl {
public:
    explicit X11WindowControl(X11Connection &x11) : m_x11(x11) {}

    bool canFocusWindows() const override;

private:
    X11Connection &m_x11;
};

} // namespace morvane
