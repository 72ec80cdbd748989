#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Panel/PromptStrip.h"

#include <QList>

#include <optional>

namespace morvane {

class DecideButton;
class TextLabel;

/// Asks about the tool call that a session waits for: deny it, allow it, or allow it from now on.
/// The buttons have the order of `PendingApproval::allChoices`, and so of the digit keys.
class ApprovalStrip : public PromptStrip {
    Q_OBJECT

public:
    ApprovalStrip(Scheduler &scheduler, QWidget *parent);

    /// The session must have a pending approval. `name` is the session's, so that a screen reader
    /// tells the strips apart.
    void setApproval(const Session &session, const QString &name, bool showsShortcuts);

signals:
    void decided(const morvane::AgentDecision &decision);

private:
    void makeButtons();
    DecideButton *makeButton(const AgentDecision &decision);
    void showCall();
    void showChoices(const QString &name, bool showsShortcuts);

    std::optional<PendingApproval> m_approval;
    bool m_showsAll = false; ///< the whole call instead of its one-line summary
    TextLabel *m_title;
    DecideButton *m_more;
    TextLabel *m_note;               ///< says what can't be shown
    QList<DecideButton *> m_buttons; ///< one for each possible choice, in their order
};

} // namespace morvane
