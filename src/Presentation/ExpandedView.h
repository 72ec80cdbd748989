#pragma once

#include "Core/SessionSlice.h"
#include "Presentation/PanelContext.h"
#include "Presentation/SessionRow.h"

#include <QHash>
#include <QSet>
#include <QWidget>

class QVBoxLayout;

namespace morvane {

class CompletedRow;
class ListViewport;
class TextLabel;

/// The open panel: the sessions at work first, then the open ones, then those that have finished.
/// Shown by the presenters, which bring it up to date; it asks for the size that its content needs.
class ExpandedView : public QWidget {
    Q_OBJECT

public:
    ExpandedView(const PanelContext &context, QWidget *parent);

    /// The height that the panel may take, in points.
    void setContentHeightBudget(int budget);

    /// Takes over what the store has now.
    void refresh();

    QSize sizeHint() const override;

signals:
    /// A row has changed its height by itself.
    void contentResized();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    TextLabel *header(const QString &text, const QColor &color);
    QList<QWidget *> takeRows(const SessionSlice &sessions, QSet<QString> &kept);
    QList<QWidget *> takeRows(const QList<CompletedRecord> &records, QSet<QString> &kept);
    bool showsAgents() const;
    SessionRow &row(const QString &sessionID);
    void arrange(const QList<QWidget *> &content);
    template <typename Row>
    void dropRows(QHash<QString, Row *> &rows, const QSet<QString> &kept);
    int maxListHeight() const;

    const PanelContext m_context;
    int m_contentHeightBudget;
    int m_width;
    ListViewport *m_viewport;
    QVBoxLayout *m_list;
    TextLabel *m_openHeader;
    TextLabel *m_recentHeader;
    TextLabel *m_archiveHeader;
    TextLabel *m_emptyText;
    QHash<QString, SessionRow *> m_rows;            ///< by session
    QHash<QString, CompletedRow *> m_completedRows; ///< by record
};

} // namespace morvane
