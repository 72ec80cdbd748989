#pragma once

#include "Platform/OverlayWindows.h"
#include "Support/FakeOverlayWindow.h"

namespace morvane {

/// Hands out fake overlays, and knows the ones that are there, oldest first.
class FakeOverlayWindows : public OverlayWindows {
public:
    std::unique_ptr<OverlayWindow> adopt(QWidget &widget) override {
        return std::make_unique<FakeOverlayWindow>(widget, alive);
    }

    QList<FakeOverlayWindow *> alive;
};

} // namespace morvane
