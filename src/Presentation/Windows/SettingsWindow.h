#pragma once

#include "Presentation/Windows/ManagedWindow.h"

namespace morvane {

/// "Morvane Settings". Only hidden when it is closed, so that it comes back as it was left. Owned
/// by `AppDelegate`.
class SettingsWindow : public ManagedWindow {
    Q_OBJECT

public:
    SettingsWindow();
};

} // namespace morvane
