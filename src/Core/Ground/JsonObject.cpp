#include "Core/Ground/JsonObject.h"

#include "Core/Ground/JsonMembers.h"
#include "Core/Ground/Utf8Text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace morvane {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether the number surely fits 64 bits.
bool isSmall(std::string_view number) {
    return number.size() <= 18 && number.find_first_of(".eE") == number.npos;
}

/// The code unit whose escape the text begins with, or none.
std::optional<unsigned> escapedUnit(std::string_view text) {
    unsigned unit = 0;
    if (text.size() < 6 || !text.starts_with("\\u") ||
        std::from_chars(text.data() + 2, text.data() + 6, unit, 16).ptr != text.data() + 6) {
        return std::nullopt;
    }
    return unit;
}

/// How many bytes to take of the escape that the text begins with, so that the rest can be taken as
/// plain characters; 0 for a lone surrogate, which JSON allows and simdjson refuses.
std::size_t escapeLength(std::string_view text) {
    const auto unit = escapedUnit(text);
    if (!unit || *unit < 0xD800 || *unit > 0xDFFF) {
        return 2;
    }
    const auto low = *unit < 0xDC00 ? escapedUnit(text.substr(6)) : std::nullopt;
    return low && *low >= 0xDC00 && *low <= 0xDFFF ? 12 : 0;
}

/// The same JSON in a form that simdjson accepts: it refuses numbers that fit neither 64 bits nor a
/// double, and lone surrogates, which JavaScript writes where it cuts an emoji in two. So every
/// well-formed number outside of strings becomes 0, except for small integers, since no other
/// number is read here; and a lone surrogate becomes the replacement character.
std::string acceptable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool inString = false;
    while (!text.empty()) {
        std::size_t length = 1;
        std::string_view piece;
        if (!inString && (text.front() == '-' || isDigit(text.front()))) {
            length = std::min(text.find_first_not_of("0123456789+-.eE"), text.size());
            const std::string_view number = text.substr(0, length);
            const bool isWhole = JsonMembers::numberLength(number) == length;
            piece = isWhole && !isSmall(number) ? std::string_view("0") : number;
        } else if (inString && text.front() == '\\') {
            length = escapeLength(text);
            piece = length > 0 ? text.substr(0, length) : std::string_view("\\ufffd");
            length = length > 0 ? length : 6;
        } else {
            inString = (text.front() == '"') != inString;
            piece = text.substr(0, 1);
        }
        result.append(piece);
        text.remove_prefix(std::min(length, text.size()));
    }
    return result;
}

/// This thread's parser while no object uses it: a parser has buffers, which are expensive to
/// allocate anew for every object.
std::unique_ptr<simdjson::dom::parser> &spareParser() {
    static thread_local std::unique_ptr<simdjson::dom::parser> spare;
    return spare;
}

} // namespace

void JsonObject::GiveBack::operator()(simdjson::dom::parser *parser) const {
    spareParser().reset(parser);
}

JsonObject::Parser JsonObject::takeParser() {
    auto spare = std::move(spareParser());
    return Parser((spare ? std::move(spare) : std::make_unique<simdjson::dom::parser>()).release());
}

std::optional<JsonObject> JsonObject::parse(QByteArrayView bytes) {
    if (bytes.isEmpty()) {
        return std::nullopt;
    }
    std::string_view text(bytes.data(), static_cast<std::size_t>(bytes.size()));
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    simdjson::dom::object root;
    Parser parser = takeParser();
    auto parsed = parser->parse(text.data(), text.size());
    if (parsed.error() != simdjson::SUCCESS) {
        parsed = parser->parse(acceptable(text));
    }
    if (parsed.get(root) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return JsonObject(std::move(parser), root);
}

std::optional<QStringList> JsonObject::strings(std::string_view key) const {
    simdjson::dom::array members;
    if (m_root[key].get(members) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    QStringList result;
    for (const simdjson::dom::element member : members) {
        std::string_view text;
        if (member.get(text) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        result.append(textOf(text));
    }
    return result;
}

std::optional<QString> JsonObject::string(simdjson::dom::object object, std::string_view key) {
    std::string_view text;
    if (object[key].get(text) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return textOf(text);
}

std::optional<simdjson::dom::object> JsonObject::object(simdjson::dom::object parent,
                                                        std::string_view key) {
    simdjson::dom::object child;
    if (parent[key].get(child) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return child;
}

std::optional<std::vector<simdjson::dom::object>> JsonObject::objects(simdjson::dom::object parent,
                                                                      std::string_view key) {
    simdjson::dom::array members;
    if (parent[key].get(members) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    std::vector<simdjson::dom::object> result;
    for (const simdjson::dom::element member : members) {
        simdjson::dom::object object;
        if (member.get(object) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        result.push_back(object);
    }
    return result;
}

} // namespace morvane
