#pragma once

#include "Platform/OverlayWindow.h"

#include <memory>

class QWidget;

namespace morvane {

/// Makes overlay windows. Main thread.
class OverlayWindows {
public:
    OverlayWindows() = default;
    OverlayWindows(const OverlayWindows &) = delete;
    OverlayWindows &operator=(const OverlayWindows &) = delete;
    virtual ~OverlayWindows() = default;

    /// Makes an overlay of a widget without a parent that has not been shown yet.
    virtual std::unique_ptr<OverlayWindow> adopt(QWidget &widget) = 0;
};

} // namespace morvane
