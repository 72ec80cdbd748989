#include "Presentation/Windows/ApprovalsSection.h"

#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Windows/ToggleRow.h"

namespace morvane {

ApprovalsSection::ApprovalsSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Approvals"), parent) {
    ToggleRow *toggle = addToggle(
        tr("&Answer permission prompts from the notch"),
        [&settings = context.settings] { return settings.approvalsEnabled(); },
        context.program.setApprovalsEnabled);
    TextLabel *needs = addCaption(tr("Needs a connected agent that supports it. Claude Code and "
                                     "Codex do; connect one above."));
    addCaption(
        tr("Adds Allow / Deny buttons to a session that is waiting on a tool. This is the "
           "one hook Morvane installs that the agent waits on — if Morvane isn't running, is "
           "busy, or you ignore it for a minute, the prompt appears in your terminal exactly "
           "as it does today. Silence never approves anything."));
    TextLabel *codex =
        addCaption(tr("Codex supports real Allow / Deny replies here. Its current hook contract "
                      "does not accept “always allow” rules or structured question answers, so "
                      "Morvane leaves those richer choices in Codex instead of sending a response "
                      "Codex would reject. After changing hooks, review them with /hooks and start "
                      "a new session."));
    onRefresh([toggle, needs, codex, &connections = context.connections] {
        const bool isDecidable = connections.hasDecidableAgent();
        toggle->setEnabled(isDecidable);
        needs->setVisible(!isDecidable);
        codex->setVisible(connections.installedAgents().contains(AgentKind::codex));
    });
}

} // namespace morvane

#include "moc_ApprovalsSection.cpp"
