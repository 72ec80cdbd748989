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
        showsAgent = 1,     ///< whose session it is, where there are several agents
        showsShortcuts = 2, ///< the digits that press the strip's buttons
    };
    Q_DECLARE_FLAGS(Details, Detail)

    /// The context outlives the row, which hands on to it what a person wants.
    SessionRow(const PanelContext &context, QWidget *parent);

    void setSession(const Session &session, Details details);
    const Session &session() const { return m_session; }

    /// It waits for nothing any more.
    void outliveEntry() override;

    /// How high the view of a call may become, in points.
    void setInputHeightLimit(int limit);

    /// Whether the prompt here is still the one that waits, shows the digits that answer it, and
    /// has stood here long enough to be read.
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
