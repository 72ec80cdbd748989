#pragma once

#include <QHash>
#include <QObject>
#include <QString>

namespace morvane {

class SessionStore;

/// The replies that somebody has typed and that have not gone out, one for a session at the most.
/// Every display offers them, and one goes with its session, to which nothing could send it any
/// more. Owned by `AppController`; main thread.
class ReplyDrafts : public QObject {
    Q_OBJECT

public:
    /// The store outlives the drafts.
    explicit ReplyDrafts(const SessionStore &store);

    /// Empty where there is none.
    QString text(const QString &sessionID) const { return m_texts.value(sessionID); }

    /// Takes the place of the one before. Nothing for a session that has gone.
    void keep(const QString &sessionID, const QString &text);

    void drop(const QString &sessionID);

signals:
    void changed(const QString &sessionID);

private:
    const SessionStore &m_store;
    QHash<QString, QString> m_texts; ///< by session
};

} // namespace morvane
