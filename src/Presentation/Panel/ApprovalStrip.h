#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Sessions/PendingApproval.h"

#include <QList>
#include <QWidget>

namespace morvane {

class Countdown;
class DecideButton;
class Scheduler;
class TextLabel;

/// Offers the tool call that a session waits with: refuse it, allow it, or allow it from now on.
/// The order of the buttons is that of the choices, and so that of the digit keys.
class ApprovalStrip : public QWidget {
    Q_OBJECT

public:
    ApprovalStrip(Scheduler &scheduler, QWidget *parent);

    void setApproval(const PendingApproval &approval, bool showsShortcuts);

signals:
    void decided(const morvane::AgentDecision &decision);

private:
    DecideButton *addButton(const AgentDecision &decision);

    QString m_approvalID;
    TextLabel *m_title;
    TextLabel *m_detail;
    Countdown *m_countdown;
    QList<DecideButton *> m_buttons; ///< one for each of all choices, in their order
};

} // namespace morvane
