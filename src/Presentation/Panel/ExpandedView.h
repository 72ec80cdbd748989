#pragma once

#include "Core/Sessions/CompletedRecord.h"
#include "Platform/Task.h"
#include "Platform/Time.h"
#include "Presentation/Panel/RowList.h"

#include <QSet>

#include <optional>

namespace morvane {

class ListViewport;
struct PanelContext;
class UsageBars;

/// The open panel: the sessions at work first, then the open ones, then those that have finished;
/// below them the usage of the limits. The presenters show it, refresh it, and then give it the
/// size that it asks for.
class ExpandedView : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the view.
    ExpandedView(const PanelContext &context, QWidget *parent);
    ~ExpandedView() override;

    /// The height that the panel may take, in points.
    void setContentHeightBudget(int budget);

    /// The width that the panel may take, in points.
    void setContentWidthBudget(int budget);

    /// The most that the list may take of this budget, in points, above a footer of this height; a
    /// height of 0 stands for no footer.
    static int maxActiveListHeight(int contentHeightBudget, int footerHeight);

    /// Brings everything on show up to date.
    void refresh();

    /// Whether this view shows the prompt that the store has for the session, and has shown it long
    /// enough to be read.
    bool hasBeenRead(const QString &sessionID) const;

    /// The record with the digit for this position, from 0; none until all entries have been shown,
    /// in the same order, long enough to be read.
    std::optional<CompletedRecord> recordAt(int digit) const;

    /// Puts the keyboard focus on the session that waits for an answer, else on the first row.
    void takeFocus();

    QSize sizeHint() const override;

signals:
    /// A part has changed its height by itself.
    void contentResized();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /// Both return whether the list has just been scrolled to a waiting prompt.
    bool takeOver();
    bool showCall();
    void focusMoved(const QWidget *from, const QWidget *to);
    bool takeKeys(const QList<RowList::Entry> &next);
    bool takeContent();
    int wantedWidth() const;
    std::optional<Seconds> movement(bool attentionChanges, bool contentChanges) const;
    void startReading();
    void scheduleAges();
    void place();

    const PanelContext &m_context;
    int m_contentHeightBudget = 0;
    int m_footerHeight = 0; ///< 0 until it is measured
    int m_contentWidthBudget;
    bool m_isTakingOver = false;
    bool m_needsAttention = false;
    bool m_owesPrompt = false; ///< a prompt waits to which the list hasn't been scrolled yet
    QStringList m_keys;        ///< of the entries on show
    QSet<QString> m_content;   ///< these and the waiting prompts, without their order
    ListViewport *m_viewport;
    UsageBars *m_footer;
    Task m_call;    ///< tries again to scroll to the waiting prompt
    Task m_ages;    ///< brings the ages of the records up to date
    Task m_reading; ///< lets the digits open records, after the reading time
    bool m_areRecordsRead = false;
};

} // namespace morvane
