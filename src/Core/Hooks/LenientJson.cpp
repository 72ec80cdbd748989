#include "Core/Hooks/LenientJson.h"

#include "Core/Ground/JsonMembers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace morvane::LenientJson {

namespace {

using nlohmann::json;

/// Reading and writing recurse, and a file must not be able to exhaust the stack.
constexpr int deepestLevel = 1000;

/// The prefix for the spelling of a key that isn't valid Unicode. No valid key begins with it.
constexpr char oddKey = '\xff';

json spelled(std::string_view token) {
    return json::binary({token.begin(), token.end()});
}

/// True for a text that can stand between JSON's quotation marks as it is.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(
        text, [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

/// Parses a text in one pass. An operation that doesn't find what it looks for returns false or
/// none, and leaves the position undefined.
class Parser {
public:
    explicit Parser(std::string_view text) : m_rest(text) { skip("\xEF\xBB\xBF"); }

    std::optional<json> document() {
        json root;
        return value(root, 0) && skipBlanks() && m_rest.empty() ? std::optional(std::move(root))
                                                                : std::nullopt;
    }

private:
    bool skip(std::string_view token) {
        if (!m_rest.starts_with(token)) {
            return false;
        }
        m_rest.remove_prefix(token.size());
        return true;
    }

    bool skipThrough(std::string_view token) {
        const std::size_t end = m_rest.find(token);
        if (end == std::string_view::npos) {
            return false;
        }
        m_rest.remove_prefix(end + token.size());
        return true;
    }

    /// False for a comment without an end.
    bool skipBlanks() {
        for (;;) {
            const std::size_t end = m_rest.find_first_not_of(" \t\r\n");
            m_rest.remove_prefix(std::min(end, m_rest.size()));
            if (skip("//")) {
                m_rest.remove_prefix(std::min(m_rest.find('\n'), m_rest.size()));
            } else if (!skip("/*")) {
                return true;
            } else if (!skipThrough("*/")) {
                return false;
            }
        }
    }

    bool value(json &result, int level) {
        if (!skipBlanks() || m_rest.empty()) {
            return false;
        }
        if (level > deepestLevel && (m_rest.front() == '{' || m_rest.front() == '[')) {
            return unread(result);
        }
        switch (m_rest.front()) {
        case '{':
            result = json::object();
            return members('}', [&] { return member(result, level); });
        case '[':
            result = json::array();
            return members(']', [&] { return value(result.emplace_back(), level + 1); });
        case '"':
            return string(result);
        default:
            return literal(result) || number(result);
        }
    }

    template <typename Member>
    bool members(char end, Member member) {
        m_rest.remove_prefix(1);
        for (;;) {
            if (!skipBlanks()) {
                return false;
            }
            if (skip({&end, 1})) {
                return true;
            }
            if (!member() || !skipBlanks() || (!skip(",") && !m_rest.starts_with(end))) {
                return false;
            }
        }
    }

    bool member(json &object, int level) {
        json key;
        if (!m_rest.starts_with('"') || !string(key) || !skipBlanks() || !skip(":")) {
            return false;
        }
        if (key.is_binary()) {
            const json::binary_t &token = key.get_binary();
            key = oddKey + std::string(token.begin(), token.end());
        }
        return value(object[key.get_ref<const std::string &>()], level + 1);
    }

    /// Takes a list or an object that is nested too deeply as it is spelled, to its end. Only its
    /// brackets and strings are looked at.
    bool unread(json &result) {
        const std::string_view all = m_rest;
        std::string ends;
        do {
            if (!skipBlanks() || m_rest.empty()) {
                return false;
            }
            std::size_t length = 1;
            const char next = m_rest.front();
            if (next == '{' || next == '[') {
                ends += next == '{' ? '}' : ']';
            } else if (next == ends.back()) {
                ends.pop_back();
            } else if (next == '"') {
                length = stringLength();
            } else {
                length =
                    std::min(m_rest.find_first_not_of("+-.,:0123456789Eaeflnrstu"), m_rest.size());
            }
            if (length == 0) {
                return false;
            }
            m_rest.remove_prefix(length);
        } while (!ends.empty());
        result = spelled(all.substr(0, all.size() - m_rest.size()));
        return true;
    }

    bool string(json &result) {
        const std::string_view token = m_rest.substr(0, stringLength());
        if (token.empty()) {
            return false;
        }
        m_rest.remove_prefix(token.size());
        const std::string_view text = token.substr(1, token.size() - 2);
        if (isPlain(text)) {
            result = std::string(text);
            return true;
        }
        result = json::parse(token, nullptr, false);
        if (result.is_discarded()) {
            // It is well formed, but holds half a surrogate pair or bytes that aren't UTF-8.
            result = spelled(token);
        }
        return true;
    }

    /// The length with the quotation marks; 0 for anything but a string.
    std::size_t stringLength() const {
        for (std::size_t i = 1; i < m_rest.size(); ++i) {
            if (m_rest[i] == '"') {
                return i + 1;
            }
            if (static_cast<unsigned char>(m_rest[i]) < 0x20) {
                return 0;
            }
            if (m_rest[i] == '\\') {
                const std::size_t length = escapeLength(m_rest.substr(i + 1));
                if (length == 0) {
                    return 0;
                }
                i += length;
            }
        }
        return 0;
    }

    static std::size_t escapeLength(std::string_view behindBackslash) {
        const char kind = behindBackslash.empty() ? '\0' : behindBackslash.front();
        if (kind != 'u') {
            return std::string_view("\"\\/bfnrt").find(kind) == std::string_view::npos ? 0 : 1;
        }
        const std::string_view digits = behindBackslash.substr(1, 4);
        const std::size_t end = digits.find_first_not_of("0123456789abcdefABCDEF");
        return digits.size() == 4 && end == std::string_view::npos ? 5 : 0;
    }

    bool literal(json &result) {
        if (skip("null")) {
            result = nullptr;
            return true;
        }
        if (skip("true")) {
            result = true;
            return true;
        }
        result = false;
        return skip("false");
    }

    bool number(json &result) {
        const std::string_view token = m_rest.substr(0, JsonMembers::numberLength(m_rest));
        if (token.empty()) {
            return false;
        }
        m_rest.remove_prefix(token.size());
        if (!(token.starts_with('-') ? integer<std::int64_t>(token, result)
                                     : integer<std::uint64_t>(token, result))) {
            result = spelled(token);
        }
        return true;
    }

    template <typename Integer>
    static bool integer(std::string_view token, json &result) {
        Integer value = 0;
        const auto [end, error] = std::from_chars(token.begin(), token.end(), value);
        result = value;
        return error == std::errc() && end == token.end() && token != "-0";
    }

    std::string_view m_rest;
};

class Writer {
public:
    std::string document(const json &root) {
        value(root, 0);
        m_text += '\n';
        return std::move(m_text);
    }

private:
    void line(int level) {
        m_text += '\n';
        m_text.append(2 * static_cast<std::size_t>(level), ' ');
    }

    void scalar(const json &scalar) {
        m_text += scalar.dump(-1, ' ', false, json::error_handler_t::replace);
    }

    void string(const std::string &text) {
        if (isPlain(text)) {
            m_text += '"' + text + '"';
        } else {
            scalar(text);
        }
    }

    void value(const json &value, int level) {
        if (value.is_binary()) {
            m_text.append(value.get_binary().begin(), value.get_binary().end());
        } else if (value.is_string()) {
            string(value.get_ref<const std::string &>());
        } else if (value.empty() || !value.is_structured()) {
            scalar(value);
        } else if (value.is_object()) {
            members('{', '}', value, level, [](const auto &member) { return &member.key(); });
        } else {
            members('[', ']', value, level,
                    [](const auto &) -> const std::string * { return nullptr; });
        }
    }

    template <typename Key>
    void members(char begin, char end, const json &container, int level, Key key) {
        char before = begin;
        for (const auto &member : container.items()) {
            m_text += before;
            before = ',';
            line(level + 1);
            if (const std::string *name = key(member)) {
                if (name->starts_with(oddKey)) {
                    m_text.append(*name, 1);
                } else {
                    string(*name);
                }
                m_text += ": ";
            }
            value(member.value(), level + 1);
        }
        line(level);
        m_text += end;
    }

    std::string m_text;
};

} // namespace

std::optional<json> parse(QByteArrayView text) {
    return Parser({text.data(), static_cast<std::size_t>(text.size())}).document();
}

QByteArray write(const json &root) {
    return QByteArray::fromStdString(Writer().document(root));
}

} // namespace morvane::LenientJson
