#include "Presentation/Windows/SettingsWindow.h"

#include "Core/Hooks/AgentConnections.h"
#include "Presentation/Windows/SettingsView.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace morvane {

namespace {

constexpr QSize usualSize(600, 760);
constexpr int leastWidth = 440;
constexpr int leastHeight = 320;
constexpr double shareOfScreen = 0.85;

} // namespace

SettingsWindow::SettingsWindow(const WindowContext &context)
    : ManagedWindow(tr("Morvane Settings")), m_connections(context.connections),
      m_view(new SettingsView(context, this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setMinimumSize(leastWidth, leastHeight);
    const double room = screen()->availableGeometry().height() * shareOfScreen;
    resize(usualSize.width(), std::clamp(qRound(room), leastHeight, usualSize.height()));
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
