#include "Presentation/Windows/AgentsSection.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Hooks/AgentConnections.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Windows/AgentList.h"

#include <QHBoxLayout>

namespace morvane {

AgentsSection::AgentsSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Agents"), parent) {
    addAgents(context.connections);
    TextLabel *status = makeText({});
    addRow(tr("Event server"))->addWidget(status);
    onRefresh(
        [status, serverStatus = context.program.serverStatus] { status->setText(serverStatus()); });
    addFooter(tr("Connecting an agent merges Morvane's hooks into its own settings file — other "
                 "entries are left untouched, and a backup is written first."));
}

void AgentsSection::addAgents(AgentConnections &connections) {
    auto *list = new AgentList(connections, AgentRow::Detail::health, this);
    addWidget(list);
    TextLabel *rest = addCaption();
    onRefresh([list, rest, &connections] {
        const auto offered = connections.offeredAgents();
        const auto left = static_cast<int>(AgentRegistry::all().size() - offered.size());
        list->show(offered);
        if (offered.empty()) {
            rest->setText(tr("No supported agents detected yet. Install Claude Code, Codex, Gemini "
                             "CLI, Cursor or another supported agent and it will appear here."));
        } else if (left == 1) {
            rest->setText(tr("1 more supported agent will appear here once installed."));
        } else {
            rest->setText(
                tr("%1 more supported agents will appear here once installed.").arg(left));
        }
        rest->setVisible(left > 0);
    });
}

} // namespace morvane

#include "moc_AgentsSection.cpp"
