#include "Core/Settings/DefaultsFormat.h"

#include "Core/Ground/Utf8Text.h"

#include <nlohmann/json.hpp>

namespace morvane::DefaultsFormat {

namespace {

using nlohmann::json;

constexpr const char *dataKey = "$data";

/// Converting values from JSON recurses, and a file must not be able to exhaust the stack.
constexpr int deepestLevel = 100;

QVariant toVariant(const json &value);

QVariantMap toMap(const json &object) {
    QVariantMap result;
    for (const auto &[key, member] : object.items()) {
        result.insert(textOf(key), toVariant(member));
    }
    return result;
}

QVariantList toList(const json &array) {
    QVariantList result;
    for (const json &member : array) {
        result.append(toVariant(member));
    }
    return result;
}

/// The bytes that the object stands for. None for any other object, also if its text isn't valid
/// base64 throughout: as bytes it would be written back differently.
std::optional<QByteArray> toData(const json &object) {
    if (object.size() != 1 || !object.contains(dataKey) || !object[dataKey].is_string()) {
        return std::nullopt;
    }
    const auto decoded = QByteArray::fromBase64Encoding(
        QByteArray::fromStdString(object[dataKey].get<std::string>()),
        QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(*decoded) : std::nullopt;
}

QVariant toVariant(const json &value) {
    switch (value.type()) {
    case json::value_t::boolean:
        return value.get<bool>();
    case json::value_t::number_integer:
        return QVariant::fromValue<qint64>(value.get<qint64>());
    case json::value_t::number_unsigned:
        return QVariant::fromValue<quint64>(value.get<quint64>());
    case json::value_t::number_float:
        return value.get<double>();
    case json::value_t::string:
        return textOf(value.get_ref<const std::string &>());
    case json::value_t::array:
        return toList(value);
    case json::value_t::object: {
        const auto data = toData(value);
        return data ? QVariant(*data) : QVariant(toMap(value));
    }
    default:
        return {};
    }
}

json toJson(const QVariant &value);

json toJson(const QVariantMap &map) {
    json result = json::object();
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        result[entry.key().toStdString()] = toJson(entry.value());
    }
    return result;
}

json toJson(const QVariantList &list) {
    json result = json::array();
    for (const QVariant &member : list) {
        result.push_back(toJson(member));
    }
    return result;
}

json toJson(const QVariant &value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Long:
        return value.toLongLong();
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::ULong:
        return value.toULongLong();
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QByteArray:
        return {{dataKey, value.toByteArray().toBase64().toStdString()}};
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return toJson(value.toList());
    case QMetaType::QVariantMap:
        return toJson(value.toMap());
    case QMetaType::QString:
        return value.toString().toStdString();
    default:
        return nullptr;
    }
}

} // namespace

std::optional<QVariantMap> parse(const QByteArray &text) {
    bool isTooDeep = false;
    const auto boundDepth = [&](int depth, json::parse_event_t, json &) {
        isTooDeep = isTooDeep || depth > deepestLevel;
        return !isTooDeep;
    };
    const json root = json::parse(text.begin(), text.end(), boundDepth, false);
    return root.is_object() && !isTooDeep ? std::optional(toMap(root)) : std::nullopt;
}

QByteArray write(const QVariantMap &values) {
    return QByteArray::fromStdString(toJson(values).dump(2)) + '\n';
}

} // namespace morvane::DefaultsFormat
