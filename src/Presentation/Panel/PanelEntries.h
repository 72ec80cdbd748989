#pragma once

#include "Core/Sessions/SessionSlice.h"
#include "Presentation/Panel/RowList.h"

#include <QColor>
#include <QCoreApplication>
#include <QFont>
#include <QMargins>

namespace morvane {

struct CompletedRecord;
struct PanelContext;

/// The entries of the open panel as the store has them at the moment: the sessions at work first,
/// then the open ones, then those that have finished. Made for one refresh; the context and the
/// rows outlive the entries.
class PanelEntries {
    Q_DECLARE_TR_FUNCTIONS(PanelEntries)

public:
    using Entries = QList<RowList::Entry>;

    struct Options {
        bool needsAttention = false; ///< a prompt waits, which hides the records
        int inputHeightLimit = 0;    ///< of the view of a call, in points
    };

    PanelEntries(const PanelContext &context, RowList &rows, const Options &options);

    Entries all() const;

private:
    bool showsDigits() const;
    void appendSessions(Entries &list, const SessionSlice &sessions) const;
    void appendRecords(Entries &list, const QString &title, const QColor &color,
                       QList<CompletedRecord> records) const;
    RowList::Entry header(const QString &title, const QColor &color) const;
    RowList::Entry text(const QString &text, const QFont &font, const QColor &color,
                        const QMargins &margins, Qt::Alignment alignment) const;

    const PanelContext &m_context;
    RowList &m_rows;
    const Options m_options;
};

} // namespace morvane
