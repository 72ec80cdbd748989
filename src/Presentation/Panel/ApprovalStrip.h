#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Panel/PromptStrip.h"

#include <QList>

#include <optional>

namespace morvane {

class DecideButton;
class TextLabel;

/// Offers the tool call that a session waits with: refuse it, allow it, or allow it from now on.
/// The order of the buttons is that of the choices, and so that of the digit keys.
class ApprovalStrip : public PromptStrip {
    Q_OBJECT

public:
    ApprovalStrip(Scheduler &scheduler, QWidget *parent);

    /// The session must have a pending approval. The name is the session's, by which a screen
    /// reader tells one strip from another.
    void setApproval(const Session &session, const QString &name, bool showsShortcuts);

signals:
    void decided(const morvane::AgentDecision &decision);

private:
    void makeButtons();
    DecideButton *makeButton(const AgentDecision &decision);
    void showCall();
    void showChoices(const QString &name, bool showsShortcuts);

    std::optional<PendingApproval> m_approval;
    bool m_showsAll = false; ///< of a call that one line stands for
    TextLabel *m_title;
    DecideButton *m_more;
    TextLabel *m_note;               ///< on what can't be shown
    QList<DecideButton *> m_buttons; ///< one for each of all choices, in their order
};

} // namespace morvane
