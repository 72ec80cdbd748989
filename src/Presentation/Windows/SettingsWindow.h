#pragma once

#include "Presentation/Windows/ManagedWindow.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Morvane Settings". Only hidden when it is closed, so that it comes back as it was left. Owned
/// by `AppDelegate`.
class SettingsWindow : public ManagedWindow {
    Q_OBJECT

public:
    explicit SettingsWindow(const WindowContext &context);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    AgentConnections &m_connections;
};

} // namespace morvane
