#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <simdjson.h>

#include <optional>
#include <string_view>
#include <vector>

namespace morvane {

/// The JSON object of a hook's payload, or of a line of a transcript, read generically: each reader
/// asks for a key and a type, and anything else counts as missing.
///
/// The values live in a parser that each thread has one of, so an object is valid only until the
/// same thread parses the next one.
class JsonObject {
public:
    /// None when the bytes aren't JSON with an object at the top.
    static std::optional<JsonObject> parse(QByteArrayView bytes);

    simdjson::dom::object root() const { return m_root; }

    std::optional<QString> string(std::string_view key) const { return string(m_root, key); }

    /// The list under the key, or none unless all of its members are strings.
    std::optional<QStringList> strings(std::string_view key) const;

    static std::optional<QString> string(simdjson::dom::object object, std::string_view key);
    static std::optional<simdjson::dom::object> object(simdjson::dom::object parent,
                                                       std::string_view key);

    /// The list under the key, or none unless all of its members are objects.
    static std::optional<std::vector<simdjson::dom::object>> objects(simdjson::dom::object parent,
                                                                     std::string_view key);

private:
    explicit JsonObject(simdjson::dom::object root) : m_root(root) {}

    simdjson::dom::object m_root;
};

} // namespace morvane
