#pragma once

#include "Core/Sessions/Session.h"
#include "Presentation/Panel/ListRow.h"

namespace morvane {

class ApprovalStrip;
class ExternalStrip;
class PixelAnimator;
class QuestionStrip;
class SessionMetaLine;
class SubagentList;
class TextLabel;

/// One live session in the panel: its state, its name and what it is doing, and below that the
/// strip for whatever it waits for. A row stays with its session and is brought up to date in
/// place, so that nothing vanishes under a press because another session has changed.
class SessionRow : public ListRow {
    Q_OBJECT

public:
    enum class Detail {
        showsAgent = 1,     ///< names the agent, where there are several
        showsShortcuts = 2, ///< the digits that press the strip's buttons
    };
    Q_DECLARE_FLAGS(Details, Detail)

    /// The context outlives the row, which reports the person's actions to it.
    SessionRow(const PanelContext &context, QWidget *parent);

    void setSession(const Session &session, Details details);
    const Session &session() const { return m_session; }

    /// Shows the session as the store has it, or as one that has ended and waits for nothing.
    void outliveEntry() override;

    /// The most height that the view of a call takes, in points.
    void setInputHeightLimit(int limit);

    /// Whether the prompt shown here is still the pending one, shows the digits that answer it, and
    /// has been shown long enough to be read.
    bool hasBeenRead() const;

private:
    const QWidget *strip() const override { return m_strip; }
    void showMain(Details details);
    void showStrip(Details details);
    QWidget *stripFor(bool showsShortcuts);
    void retire(QWidget &strip);
    void select();
    bool isUpToDate() const;
    ApprovalStrip &approvalStrip();
    QuestionStrip &questionStrip();
    ExternalStrip &externalStrip();

    Session m_session;
    Details m_details;
    int m_inputHeightLimit = 0;
    bool m_isFilled = false;
    PixelAnimator *m_mark;
    TextLabel *m_status;
    TextLabel *m_detail;
    SessionMetaLine *m_meta;
    SubagentList *m_subagents;
    QWidget *m_strip = nullptr; ///< the one on show
};

Q_DECLARE_OPERATORS_FOR_FLAGS(SessionRow::Details)

} // namespace morvane
