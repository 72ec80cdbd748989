#include "Presentation/Windows/SettingsWindow.h"

#include "Core/Hooks/AgentConnections.h"
#include "Presentation/Windows/SettingsView.h"

#include <QEvent>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr QSize usualSize(600, 760);
constexpr int leastWidth = 440;
constexpr int leastHeight = 320;

} // namespace

SettingsWindow::SettingsWindow(const WindowContext &context)
    : ManagedWindow(tr("Morvane Settings")), m_connections(context.connections),
      m_view(new SettingsView(context, this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setMinimumSize(leastWidth, leastHeight);
    resize(usualSize);
}

void SettingsWindow::refresh() {
    m_view->refresh();
}

/// Whoever comes back to the window may have changed an agent's settings in an editor meanwhile.
bool SettingsWindow::event(QEvent *event) {
    if (event->type() == QEvent::WindowActivate) {
        m_connections.refreshStatus();
    }
    return ManagedWindow::event(event);
}

} // namespace morvane

#include "moc_SettingsWindow.cpp"
