#include "Presentation/Overlay/ReplyDrafts.h"

#include "Core/Sessions/SessionStore.h"

namespace morvane {

ReplyDrafts::ReplyDrafts(const SessionStore &store) : m_store(store) {
    connect(&store, &SessionStore::sessionRemoved, this, &ReplyDrafts::drop);
}

void ReplyDrafts::keep(const QString &sessionID, const QString &text) {
    if (m_store.sessions().contains(sessionID)) {
        m_texts.insert(sessionID, text);
        emit changed(sessionID);
    }
}

void ReplyDrafts::drop(const QString &sessionID) {
    if (m_texts.remove(sessionID) > 0) {
        emit changed(sessionID);
    }
}

} // namespace morvane

#include "moc_ReplyDrafts.cpp"
