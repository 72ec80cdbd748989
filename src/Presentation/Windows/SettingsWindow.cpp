#include "Presentation/Windows/SettingsWindow.h"

#include "Core/Hooks/AgentConnections.h"
#include "Presentation/Windows/SettingsView.h"

#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr QSize usualSize(600, 760);
constexpr int leastWidth = 440;
constexpr int leastHeight = 320;

} // namespace

SettingsWindow::SettingsWindow(const WindowContext &context)
    : ManagedWindow(tr("Morvane Settings")), m_view(new SettingsView(context, this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setMinimumSize(leastWidth, leastHeight);
    resize(usualSize);
    // An agent's settings may have been changed in an editor meanwhile.
    connect(this, &ManagedWindow::activated, &context.connections,
            &AgentConnections::refreshStatus);
}

void SettingsWindow::refresh() {
    m_view->refresh();
}

} // namespace morvane

#include "moc_SettingsWindow.cpp"
