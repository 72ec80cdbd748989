#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Agents": what is connected, and how to change that.
class AgentsSection : public FormSection {
    Q_OBJECT

public:
    AgentsSection(const WindowContext &context, QWidget *parent);

private:
    void addAgents(AgentConnections &connections);
};

} // namespace morvane
