#include "Core/Ground/JsonObject.h"

#include <algorithm>
#include <string>

namespace morvane {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether the whole text is one number by JSON's grammar.
bool isNumber(std::string_view text) {
    const auto take = [&text](std::string_view anyOf) {
        const bool found = !text.empty() && anyOf.find(text.front()) != anyOf.npos;
        text.remove_prefix(found ? 1 : 0);
        return found;
    };
    const auto takeDigits = [&text] {
        const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
        const bool found = end != text.begin();
        text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
        return found;
    };
    take("-");
    if (!take("0") && !takeDigits()) {
        return false;
    }
    if (take(".") && !takeDigits()) {
        return false;
    }
    if (take("eE")) {
        take("+-");
        if (!takeDigits()) {
            return false;
        }
    }
    return text.empty();
}

/// Whether the number surely fits 64 bits.
bool isSmall(std::string_view number) {
    return number.size() <= 18 && number.find_first_of(".eE") == number.npos;
}

/// The same JSON with every well-formed number outside of strings replaced by 0, but for small
/// integers. simdjson refuses numbers that fit neither 64 bits nor a double, which JSON allows and
/// which some agents send in tool inputs; no such number is ever read here.
std::string withoutLargeNumbers(QByteArrayView bytes) {
    const auto isNumeric = [](char c) {
        return isDigit(c) || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
    };
    std::string result;
    result.reserve(static_cast<std::size_t>(bytes.size()));
    bool inString = false;
    for (auto at = bytes.begin(); at != bytes.end();) {
        if (!inString && (*at == '-' || isDigit(*at))) {
            const auto end = std::find_if_not(at, bytes.end(), isNumeric);
            const std::string_view number(at, static_cast<std::size_t>(end - at));
            result.append(isNumber(number) && !isSmall(number) ? std::string_view("0") : number);
            at = end;
            continue;
        }
        if (*at == '"') {
            inString = !inString;
        } else if (inString && *at == '\\' && at + 1 != bytes.end()) {
            result.push_back(*at++);
        }
        result.push_back(*at++);
    }
    return result;
}

simdjson::dom::parser &threadParser() {
    static thread_local simdjson::dom::parser parser;
    return parser;
}

} // namespace

std::optional<JsonObject> JsonObject::parse(QByteArrayView bytes) {
    simdjson::dom::object root;
    auto parsed = threadParser().parse(bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (parsed.error() != simdjson::SUCCESS) {
        parsed = threadParser().parse(withoutLargeNumbers(bytes));
    }
    if (parsed.get(root) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return JsonObject(root);
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
        result.append(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    }
    return result;
}

std::optional<QString> JsonObject::string(simdjson::dom::object object, std::string_view key) {
    std::string_view text;
    if (object[key].get(text) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
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
