#include "Presentation/Panel/SessionContextList.h"

#include "Core/Sessions/SessionStore.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/RowList.h"
#include "Presentation/Panel/SessionContextRow.h"

#include <algorithm>

namespace morvane {

SessionContextList::SessionContextList(const PanelContext &context, QWidget *parent)
    : ListViewport(context.scheduler, parent), m_store(context.store) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void SessionContextList::showSessions() {
    QList<RowList::Entry> entries;
    const bool showsAgents = m_store.showsAgentBadges();
    for (const SessionSlice &sessions : {m_store.activeSessions(), m_store.openSessions()}) {
        for (const Session &session : sessions) {
            const auto fill = [this, session, showsAgents](QWidget *present) -> QWidget * {
                auto *row = present != nullptr ? static_cast<SessionContextRow *>(present)
                                               : new SessionContextRow(&rows());
                row->setSession(session, showsAgents);
                return row;
            };
            entries.append({session.id, fill});
        }
    }
    rows().setEntries(entries, std::nullopt);
    m_height = std::min(contentHeight(width(), m_heightLimit), m_heightLimit);
    updateGeometry();
    refresh();
}

} // namespace morvane

#include "moc_SessionContextList.cpp"
