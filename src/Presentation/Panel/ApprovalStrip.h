#pragma once

#include "Core/Agents/AgentDecision.h"
#include "Core/Sessions/PendingApproval.h"

#include <QList>
#include <QWidget>

#include <optional>

namespace morvane {

class Countdown;
class DecideButton;
class InputView;
class ReadingTime;
class Scheduler;
class TextLabel;

/// Offers the tool call that a session waits with: refuse it, allow it, or allow it from now on.
/// The order of the buttons is that of the choices, and so that of the digit keys; they can be
/// pressed once the call has stood there long enough to be read.
class ApprovalStrip : public QWidget {
    Q_OBJECT

public:
    ApprovalStrip(Scheduler &scheduler, QWidget *parent);

    /// The name is the session's, by which a screen reader tells one strip from another.
    void setApproval(const PendingApproval &approval, const QString &name, bool showsShortcuts);

    /// Whether it has stood here long enough to be read.
    bool hasBeenRead() const;

    /// How high the view of the call may become, in points.
    void setInputHeightLimit(int limit);

signals:
    void decided(const morvane::AgentDecision &decision);

private:
    QWidget *makeButtons();
    DecideButton *addButton(const AgentDecision &decision);
    void showCall();
    void showChoices(const QString &name, bool showsShortcuts);

    std::optional<PendingApproval> m_approval;
    bool m_showsAll = false; ///< of a call that one line stands for
    TextLabel *m_title;
    InputView *m_input;
    DecideButton *m_more;
    TextLabel *m_note; ///< on what can't be shown
    Countdown *m_countdown;
    QList<DecideButton *> m_buttons; ///< one for each of all choices, in their order
    QWidget *m_choices;              ///< with the buttons in it
    ReadingTime *m_reading;
};

} // namespace morvane
