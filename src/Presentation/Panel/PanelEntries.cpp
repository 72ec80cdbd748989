#include "Presentation/Panel/PanelEntries.h"

#include "Core/Sessions/SessionStore.h"
#include "Presentation/Overlay/DigitShortcuts.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/CompletedRow.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <utility>

namespace morvane {

namespace {

/// Differs from a session's key, since a record may bear the id of a session.
QString keyOf(const CompletedRecord &record) {
    return QStringLiteral("record:") + record.id;
}

} // namespace

PanelEntries::PanelEntries(const PanelContext &context, RowList &rows, const Options &options)
    : m_context(context), m_rows(rows), m_options(options) {}

PanelEntries::Entries PanelEntries::all() const {
    const SessionStore &store = m_context.store;
    Entries result;
    appendSessions(result, store.activeSessions());
    if (const auto open = store.openSessions(); !open.isEmpty()) {
        result.append(header(tr("OPEN — no activity yet"), Colors::secondaryText));
        appendSessions(result, open);
    }
    if (result.isEmpty() && store.jumpableCompleted().isEmpty()) {
        result.append(text(tr("no active agent sessions"), Typography::text(Typography::bodySize),
                           Colors::secondaryText, {0, 8, 0, 8}, Qt::AlignHCenter));
    }
    appendRecords(result, tr("RECENTLY COMPLETED"), Colors::secondaryText,
                  store.recentlyCompleted());
    appendRecords(result, tr("ARCHIVE"), Colors::faintText, store.archivedCompleted());
    return result;
}

bool PanelEntries::showsDigits() const {
    return m_context.digitShortcuts != nullptr && m_context.digitShortcuts->areWorking();
}

void PanelEntries::appendSessions(Entries &list, const SessionSlice &sessions) const {
    const auto awaiting = showsDigits() ? m_context.store.sessionAwaitingDecision() : std::nullopt;
    SessionRow::Details common;
    common.setFlag(SessionRow::Detail::showsAgent, m_context.store.showsAgentBadges());
    for (const Session &session : sessions) {
        SessionRow::Details details = common;
        details.setFlag(SessionRow::Detail::showsShortcuts, awaiting && awaiting->id == session.id);
        const auto fill = [&context = m_context, &rows = m_rows, session, details,
                           limit = m_options.inputHeightLimit](QWidget *present) -> QWidget * {
            auto *row = present != nullptr ? static_cast<SessionRow *>(present)
                                           : new SessionRow(context, &rows);
            row->setInputHeightLimit(limit);
            row->setSession(session, details);
            return row;
        };
        list.append({QStringLiteral("session:") + session.id, fill});
    }
}

void PanelEntries::appendRecords(Entries &list, const QString &title, const QColor &color,
                                 QList<CompletedRecord> records) const {
    // While a prompt waits, no records distract from it, but for rows into which somebody is
    // typing.
    if (m_options.needsAttention) {
        records.removeIf(
            [this](const CompletedRecord &record) { return !m_rows.holdsText(keyOf(record)); });
    }
    if (records.isEmpty()) {
        return;
    }
    list.append(header(title, color));
    const QList<CompletedRecord> jumpable = m_context.store.jumpableCompleted();
    for (const CompletedRecord &record : std::as_const(records)) {
        CompletedRow::Details details;
        details.showsAgent = m_context.store.showsAgentBadges();
        if (showsDigits() && !m_options.needsAttention) {
            details.badge = static_cast<int>(jumpable.indexOf(record));
        }
        details.session = m_context.store.finishedSession(record);
        const auto fill = [&context = m_context, &rows = m_rows, record,
                           details](QWidget *present) -> QWidget * {
            auto *row = present != nullptr ? static_cast<CompletedRow *>(present)
                                           : new CompletedRow(context, &rows);
            row->setRecord(record, details);
            return row;
        };
        list.append({keyOf(record), fill});
    }
}

RowList::Entry PanelEntries::text(const QString &text, const QFont &font, const QColor &color,
                                  const QMargins &margins, Qt::Alignment alignment) const {
    const auto fill = [=, &rows = m_rows](QWidget *present) -> QWidget * {
        if (present != nullptr) {
            return present;
        }
        auto *label = new TextLabel(font, color, 1, &rows);
        label->setText(text);
        label->setContentsMargins(margins);
        label->setAlignment(alignment);
        return label;
    };
    return {QStringLiteral("text:") + text, fill};
}

RowList::Entry PanelEntries::header(const QString &title, const QColor &color) const {
    return text(title, Typography::text(Typography::badgeSize, QFont::DemiBold), color,
                {10, 10, 10, 4}, Qt::AlignLeft);
}

} // namespace morvane
