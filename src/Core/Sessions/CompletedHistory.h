#pragma once

#include "Core/Sessions/CompletedRecord.h"

#include <QList>

namespace morvane {

class Defaults;

/// The finished sessions, newest first, and only the latest of each working directory. Read from
/// the defaults at creation, and saved there at each change; contents that can't be read count as
/// empty, and stay there until the next change. Owned by `SessionStore`; main thread only.
class CompletedHistory {
public:
    /// The defaults must outlive the history.
    explicit CompletedHistory(Defaults &defaults);

    const QList<CompletedRecord> &records() const { return m_records; }

    /// Puts the record first, and drops an earlier one with its id.
    void add(const CompletedRecord &record);

    /// Names the records of exactly this working directory.
    void rename(const QString &cwd, const QString &name);

    /// Sets the summary of the record with this id and time. False when there is none, or when it
    /// has that summary already.
    bool summarize(const QString &id, Date finishedAt, const QString &summary);

private:
    void save();

    Defaults &m_defaults;
    QList<CompletedRecord> m_records;
};

} // namespace morvane
