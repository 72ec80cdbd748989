#pragma once

#include <QHash>
#include <QObject>
#include <QString>

namespace morvane {

class SessionStore;

/// The replies that somebody has typed and that have not been sent, at most one for each session.
/// Every display offers them. A draft is dropped with its session, to which it could no longer be
/// sent. Owned by `AppController`; main thread.
class ReplyDrafts : public QObject {
    Q_OBJECT

public:
    /// The store outlives the drafts.
    explicit ReplyDrafts(const SessionStore &store);

    /// Empty where there is none.
    QString text(const QString &sessionID) const { return m_texts.value(sessionID); }

    /// Replaces the session's earlier draft. Does nothing if the session has gone.
    void keep(const QString &sessionID, const QString &text);

    void drop(const QString &sessionID);

signals:
    void changed(const QString &sessionID);

private:
    const SessionStore &m_store;
    QHash<QString, QString> m_texts; ///< by session
};

} // namespace morvane
