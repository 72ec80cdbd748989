#pragma once

#include "Platform/OverlayWindows.h"
#include "Support/FakeOverlayWindow.h"

namespace morvane {

/// Makes fake overlays, and lists the ones that exist, oldest first.
class FakeOverlayWindows : public OverlayWindows {
public:
    std::unique_ptr<OverlayWindow> adopt(QWidget &widget) override {
        return std::make_unique<FakeOverlayWindow>(widget, alive);
    }

    QList<FakeOverlayWindow *> alive;
};

} // namespace morvane
