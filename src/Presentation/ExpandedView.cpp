#include "Presentation/ExpandedView.h"

#include "Core/SessionStore.h"
#include "Platform/Scheduler.h"
#include "Presentation/Colors.h"
#include "Presentation/CompletedRow.h"
#include "Presentation/ListViewport.h"
#include "Presentation/TextLabel.h"
#include "Presentation/Typography.h"

#include <QVBoxLayout>

#include <algorithm>

namespace morvane {

namespace {

constexpr int panelPadding = 14;
constexpr int standardWidth = 520;
constexpr int attentionWidth = 600;
constexpr int smallestListLimit = 120;
constexpr int standardBudget = 480;

} // namespace

ExpandedView::ExpandedView(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_contentHeightBudget(standardBudget),
      m_width(standardWidth), m_viewport(new ListViewport(this)),
      m_list(new QVBoxLayout(&m_viewport->content())) {
    m_list->setContentsMargins(0, 0, 0, 0);
    m_list->setSpacing(2);
    m_openHeader = header(tr("OPEN — no activity yet"), Colors::secondaryText);
    m_recentHeader = header(tr("RECENTLY COMPLETED"), Colors::secondaryText);
    m_archiveHeader = header(tr("ARCHIVE"), Colors::archiveHeader);
    m_emptyText = new TextLabel(Typography::text(Typography::bodySize), Colors::secondaryText, 1,
                                &m_viewport->content());
    m_emptyText->setText(tr("no active agent sessions"));
    m_emptyText->setAlignment(Qt::AlignHCenter);
    m_emptyText->setContentsMargins(0, 8, 0, 8);
    connect(m_viewport, &ListViewport::contentResized, this, &ExpandedView::contentResized);
}

TextLabel *ExpandedView::header(const QString &text, const QColor &color) {
    auto *label = new TextLabel(Typography::text(Typography::badgeSize, QFont::DemiBold), color, 1,
                                &m_viewport->content());
    label->setText(text);
    label->setContentsMargins(10, 10, 10, 4);
    return label;
}

void ExpandedView::setContentHeightBudget(int budget) {
    m_contentHeightBudget = budget;
}

void ExpandedView::refresh() {
    const bool needsAttention =
        m_context.store.hasPendingDecision() || m_context.store.hasExternalPrompt();
    m_width = needsAttention ? attentionWidth : standardWidth;

    // Apart, since a record may bear the id of a session.
    QSet<QString> keptSessions;
    QSet<QString> keptRecords;
    QList<QWidget *> content = takeRows(m_context.store.activeSessions(), keptSessions);
    const auto append = [&content](TextLabel *header, const QList<QWidget *> &rows) {
        if (!rows.isEmpty()) {
            content.append(header);
            content.append(rows);
        }
    };
    append(m_openHeader, takeRows(m_context.store.openSessions(), keptSessions));
    if (content.isEmpty() && m_context.store.jumpableCompleted().isEmpty()) {
        content.append(m_emptyText);
    }
    // While somebody waits for an answer, the eye belongs to the question.
    if (!needsAttention) {
        append(m_recentHeader, takeRows(m_context.store.recentlyCompleted(), keptRecords));
        append(m_archiveHeader, takeRows(m_context.store.archivedCompleted(), keptRecords));
    }
    dropRows(m_rows, keptSessions);
    dropRows(m_completedRows, keptRecords);
    arrange(content);
    m_viewport->refresh();
}

QList<QWidget *> ExpandedView::takeRows(const SessionSlice &sessions, QSet<QString> &kept) {
    const SessionRow::Details details =
        showsAgents() ? SessionRow::Detail::showsAgent : SessionRow::Details();
    QList<QWidget *> result;
    for (const Session &session : sessions) {
        SessionRow &shown = row(session.id);
        shown.setSession(session, details);
        kept.insert(session.id);
        result.append(&shown);
    }
    return result;
}

QList<QWidget *> ExpandedView::takeRows(const QList<CompletedRecord> &records,
                                        QSet<QString> &kept) {
    QList<QWidget *> result;
    for (const CompletedRecord &record : records) {
        CompletedRow *&shown = m_completedRows[record.id];
        if (shown == nullptr) {
            shown = new CompletedRow(&m_viewport->content());
        }
        shown->setRecord(record, m_context.scheduler.now(), showsAgents());
        kept.insert(record.id);
        result.append(shown);
    }
    return result;
}

bool ExpandedView::showsAgents() const {
    return m_context.store.showsAgentBadges();
}

SessionRow &ExpandedView::row(const QString &sessionID) {
    if (auto *known = m_rows.value(sessionID)) {
        return *known;
    }
    auto *made = new SessionRow(m_context, &m_viewport->content());
    m_rows.insert(sessionID, made);
    connect(made, &SessionRow::decided, &m_context.store, &SessionStore::decide);
    connect(made, &SessionRow::answered, &m_context.store, &SessionStore::answer);
    connect(made, &SessionRow::selected, this, [this](const Session &session) {
        if (m_context.actions.onSelect) {
            m_context.actions.onSelect(session);
        }
    });
    return *made;
}

void ExpandedView::arrange(const QList<QWidget *> &content) {
    for (TextLabel *label : {m_openHeader, m_recentHeader, m_archiveHeader, m_emptyText}) {
        if (!content.contains(label)) {
            m_list->removeWidget(label);
            label->hide();
        }
    }
    for (int index = 0; index < content.size(); ++index) {
        QWidget *const widget = content[index];
        const QLayoutItem *present = m_list->itemAt(index);
        if (present == nullptr || present->widget() != widget) {
            m_list->removeWidget(widget);
            m_list->insertWidget(index, widget);
        }
        widget->show();
    }
}

template <typename Row>
void ExpandedView::dropRows(QHash<QString, Row *> &rows, const QSet<QString> &kept) {
    for (auto entry = rows.begin(); entry != rows.end();) {
        if (kept.contains(entry.key())) {
            ++entry;
            continue;
        }
        Row *const gone = entry.value();
        m_list->removeWidget(gone);
        gone->hide();
        // What brought the change may be a click in this very row.
        gone->deleteLater();
        entry = rows.erase(entry);
    }
}

int ExpandedView::maxListHeight() const {
    return std::max(smallestListLimit, m_contentHeightBudget - 2 * panelPadding);
}

QSize ExpandedView::sizeHint() const {
    const int whole = m_viewport->contentHeight(m_width - 2 * panelPadding);
    return {m_width, std::clamp(whole, 1, maxListHeight()) + 2 * panelPadding};
}

void ExpandedView::resizeEvent(QResizeEvent *) {
    m_viewport->setGeometry(
        rect().adjusted(panelPadding, panelPadding, -panelPadding, -panelPadding));
}

/// The wheel also scrolls from beside the list, where the pointer rests when the panel has opened.
void ExpandedView::wheelEvent(QWheelEvent *event) {
    m_viewport->scroll(*event);
}

} // namespace morvane
