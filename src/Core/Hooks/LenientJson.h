#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <nlohmann/json_fwd.hpp>

#include <optional>

/// JSON as people keep it in settings files, read into a generic tree and written back. The JSON
/// library rejects trailing commas and can't hold every number exactly, and what it can't hold
/// would be lost from the person's file. Safe from any thread.
namespace morvane::LenientJson {

/// Comments and trailing commas are skipped; of equal keys the last one counts. A number that isn't
/// a 64-bit integer, a string that isn't valid Unicode, and a list or object more than a thousand
/// levels deep become binary values that hold their spelling, so that they are written as they were
/// read. A key that isn't valid Unicode becomes one that can't equal a valid key. None for anything
/// but JSON.
std::optional<nlohmann::json> parse(QByteArrayView text);

/// Indented, with sorted keys and a line feed at the end.
QByteArray write(const nlohmann::json &root);

} // namespace morvane::LenientJson
