#include "Core/Sessions/CompletedHistory.h"

#include "Core/Sessions/CompletedHistoryFormat.h"
#include "Core/Settings/Defaults.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr qsizetype maxRecords = 10;

QString key() {
    return QStringLiteral("completedHistory");
}

} // namespace

CompletedHistory::CompletedHistory(Defaults &defaults) : m_defaults(defaults) {
    const QVariant stored = defaults.value(key());
    if (stored.typeId() == QMetaType::QByteArray) {
        m_records =
            CompletedHistoryFormat::parse(stored.toByteArray()).value_or(QList<CompletedRecord>());
    }
}

void CompletedHistory::add(const CompletedRecord &record) {
    m_records.removeIf([&](const CompletedRecord &earlier) { return earlier.id == record.id; });
    m_records.prepend(record);
    if (m_records.size() > maxRecords) {
        m_records.resize(maxRecords);
    }
    save();
}

void CompletedHistory::rename(const QString &cwd, const QString &name) {
    for (CompletedRecord &record : m_records) {
        if (record.cwd == cwd) {
            record.name = name;
        }
    }
    save();
}

bool CompletedHistory::summarize(const QString &id, Date finishedAt, const QString &summary) {
    const auto record = std::ranges::find(m_records, id, &CompletedRecord::id);
    if (record == m_records.end() || record->finishedAt != finishedAt ||
        record->summary == summary) {
        return false;
    }
    record->summary = summary;
    save();
    return true;
}

void CompletedHistory::save() {
    m_defaults.setValue(key(), CompletedHistoryFormat::write(m_records));
}

} // namespace morvane
