#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <simdjson.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace morvane {

/// The JSON object of a hook's payload, or of a line of a transcript, read generically: each reader
/// asks for a key and a type, and anything else counts as missing.
///
/// It owns its values. What it hands out of `root()` lives as long as it does.
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
    /// Leaves the parser to the next object.
    struct GiveBack {
        void operator()(simdjson::dom::parser *parser) const;
    };
    using Parser = std::unique_ptr<simdjson::dom::parser, GiveBack>;

    static Parser takeParser();

    JsonObject(Parser parser, simdjson::dom::object root)
        : m_parser(std::move(parser)), m_root(root) {}

    Parser m_parser; ///< holds the values
    simdjson::dom::object m_root;
};

} // namespace morvane
