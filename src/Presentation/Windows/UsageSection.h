#pragma once

#include "Presentation/Windows/FormSection.h"
#include "Presentation/Windows/WindowContext.h"

namespace morvane {

/// "Usage limits": whether Claude's and Codex's limits are asked for, and whether that works.
class UsageSection : public FormSection {
    Q_OBJECT

public:
    UsageSection(const WindowContext &context, QWidget *parent);

private:
    /// Adds the rows that are shown only while limits are asked for.
    void addDetails(const WindowContext &context);
    void addMilestones();
    void addSources(const UsagePoller &usage);
    void addKeychain(const WindowContext &context);
    void addBlockedStatusLines(const AgentConnections &connections);

    /// Shows the row of this widget only while limits are asked for.
    void showWhileEnabled(QWidget *row);

    MorvaneSettings &m_settings;
};

} // namespace morvane
