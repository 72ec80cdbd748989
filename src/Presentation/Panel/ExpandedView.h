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
/// below them how far the limits are used. Shown by the presenters, which bring it up to date and
/// then give it the size that it asks for.
class ExpandedView : public QWidget {
    Q_OBJECT

public:
    /// The context outlives the view.
    ExpandedView(const PanelContext &context, QWidget *parent);
    ~ExpandedView() override;

    /// The height that the panel may take, in points.
    void setContentHeightBudget(int budget);

    /// And the width.
    void setContentWidthBudget(int budget);

    /// How high the list may be in a panel of this height with a footer of that height; 0 is none.
    static int maxActiveListHeight(int contentHeightBudget, int footerHeight);

    /// Takes over what there is to show now.
    void refresh();

    /// Whether the prompt of this session stands here, as the store has it, and has done so long
    /// enough to be read.
    bool hasBeenRead(const QString &sessionID) const;

    /// The record that shows the digit at this position, from 0; none before everything has stood
    /// here, in this order, long enough to be read.
    std::optional<CompletedRecord> recordAt(int digit) const;

    /// Lets the keys begin: at the session that waits for an answer, else at the first row.
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
    /// Both yield whether the list has just been scrolled to whoever waits.
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
    int m_footerHeight = 0; ///< until it is measured
    int m_contentWidthBudget;
    bool m_isTakingOver = false;
    bool m_needsAttention = false;
    bool m_owesCall = false; ///< somebody waits for an answer, and the list hasn't gone there yet
    QStringList m_keys;      ///< of the entries on show
    QSet<QString> m_content; ///< these, and what waits for a person, in whatever order
    ListViewport *m_viewport;
    UsageBars *m_footer;
    Task m_call;    ///< shows whoever is owed that
    Task m_ages;    ///< brings the ages of the records up to date
    Task m_reading; ///< of the records
    bool m_areRecordsRead = false;
};

} // namespace morvane
