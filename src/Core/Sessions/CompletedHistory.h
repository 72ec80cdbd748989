#pragma once

#include "Core/Sessions/CompletedRecord.h"

#include <QList>

namespace morvane {

class Defaults;

/// The finished sessions, newest first, of each working directory the latest. Read from the
/// defaults once, at creation, and kept there at each change; what can't be understood there
/// counts as empty, and stays until the next change. Owned by `SessionStore`; main thread only.
class CompletedHistory {
public:
    /// The defaults must outlive the history.
    explicit CompletedHistory(Defaults &defaults);

    const QList<CompletedRecord> &records() const { return m_records; }

    /// Puts the record in front, in the place of an earlier one with its id.
    void add(const CompletedRecord &record);

    /// Names the records of exactly this working directory.
    void rename(const QString &cwd, const QString &name);

    /// Sets the summary of the record with this id and time. False when there is none, or when it
    /// says so already.
    bool summarize(const QString &id, Date finishedAt, const QString &summary);

private:
    void save();

    Defaults &m_defaults;
    QList<CompletedRecord> m_records;
};

} // namespace morvane
