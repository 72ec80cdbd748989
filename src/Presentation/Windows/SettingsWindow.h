#pragma once

#include "Presentation/Windows/ManagedWindow.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

class SettingsView;

/// "Morvane Settings". Only hidden when it is closed, so that it comes back as it was left. Owned
/// by `AppDelegate`.
class SettingsWindow : public ManagedWindow {
    Q_OBJECT

public:
    explicit SettingsWindow(const WindowContext &context);

    /// Something has changed that the view doesn't follow by itself.
    void refresh();

private:
    SettingsView *m_view;
};

} // namespace morvane
