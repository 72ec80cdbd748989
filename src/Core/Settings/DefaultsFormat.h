#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

/// The text of a defaults file: a JSON object whose values keep their type both ways.
namespace morvane::DefaultsFormat {

/// None when the text is no JSON object, or is nested too deeply.
std::optional<QVariantMap> parse(const QByteArray &text);

/// Sorted by key and indented, with a line feed at the end.
QByteArray write(const QVariantMap &values);

} // namespace morvane::DefaultsFormat
