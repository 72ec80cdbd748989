#pragma once

#include "Core/Sessions/CompletedRecord.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The stored form of the completed history: a JSON array of objects, with dates as seconds since
/// the beginning of 2001, UTC. Absent fields are left out.
namespace morvane::CompletedHistoryFormat {

/// None when the bytes are no such array, or any record lacks its id, name, working directory or
/// date. Any other field that is missing or of another type counts as absent.
std::optional<QList<CompletedRecord>> parse(const QByteArray &text);

QByteArray write(const QList<CompletedRecord> &history);

} // namespace morvane::CompletedHistoryFormat
