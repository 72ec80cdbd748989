#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <nlohmann/json_fwd.hpp>

#include <optional>

/// JSON as people keep it in settings files, read into a generic tree and written back. The JSON
/// library reads neither trailing commas nor, exactly, every number, and what it can't hold would
/// be lost to the person whose file it is. Safe from any thread.
namespace morvane::LenientJson {

/// Comments and trailing commas are passed over; of equal keys the last one holds. A number that no
/// 64-bit integer is, a string that is no valid Unicode, and a list or an object more than a
/// thousand levels deep, stand in the tree as a binary value with their spelling, so that they come
/// out as they went in; a key that is no valid Unicode as a key that no other can be. None for what
/// is no JSON.
std::optional<nlohmann::json> parse(QByteArrayView text);

/// Indented, with sorted keys and a line feed at the end.
QByteArray write(const nlohmann::json &root);

} // namespace morvane::LenientJson
