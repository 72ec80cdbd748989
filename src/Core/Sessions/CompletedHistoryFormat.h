#pragma once

#include "Core/Sessions/CompletedRecord.h"

#include <QByteArray>
#include <QList>

#include <optional>

/// The stored form of the completed history: a JSON array of objects, a date in it as seconds since
/// the beginning of 2001, UTC. What is absent is left out.
namespace morvane::CompletedHistoryFormat {

/// None when the bytes are no such array, or any record lacks its id, name, working directory or
/// date. Everything else is forgiven: what is missing or of another type is absent.
std::optional<QList<CompletedRecord>> parse(const QByteArray &text);

QByteArray write(const QList<CompletedRecord> &history);

} // namespace morvane::CompletedHistoryFormat
