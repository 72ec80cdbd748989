#include "Core/Ground/JsonMembers.h"

#include "Core/Ground/Utf8Text.h"

#include <algorithm>
#include <charconv>

namespace morvane::JsonMembers {

namespace {

constexpr std::string_view blanks = " \t\r\n";

void passBlanks(std::string_view &text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

/// Skips the mark between two tokens, if it is there, and the blanks around it.
void passOver(std::string_view &text, char mark) {
    passBlanks(text);
    text.remove_prefix(text.starts_with(mark) ? 1 : 0);
    passBlanks(text);
}

std::string_view takeFront(std::string_view &text, std::size_t length) {
    const std::string_view front = text.substr(0, length);
    text.remove_prefix(front.size());
    return front;
}

/// What an escape stands for; the text begins with the backslash.
QChar unescaped(std::string_view text) {
    if (text.substr(0, 2) == "\\u") {
        unsigned unit = 0;
        std::from_chars(text.data() + 2, text.data() + std::min<std::size_t>(6, text.size()), unit,
                        16);
        return QChar(static_cast<char16_t>(unit));
    }
    constexpr std::string_view letters = "bfnrt";
    constexpr std::string_view units = "\b\f\n\r\t";
    const char letter = text.size() > 1 ? text[1] : '\\';
    const auto at = letters.find(letter);
    return QLatin1Char(at != letters.npos ? units[at] : letter);
}

} // namespace

std::size_t stringLength(std::string_view text) {
    std::size_t end = 1;
    while (end < text.size() && text[end] != '"') {
        end += text[end] == '\\' ? 2 : 1;
    }
    return std::min(end + 1, text.size());
}

std::size_t numberLength(std::string_view text) {
    std::string_view rest = text;
    const auto take = [&rest](std::string_view anyOf) {
        const bool found = !rest.empty() && anyOf.find(rest.front()) != anyOf.npos;
        rest.remove_prefix(found ? 1 : 0);
        return found;
    };
    const auto takeDigits = [&rest] {
        const auto digits = std::min(rest.find_first_not_of("0123456789"), rest.size());
        rest.remove_prefix(digits);
        return digits > 0;
    };
    take("-");
    if (!take("0") && !takeDigits()) {
        return 0;
    }
    if (take(".") && !takeDigits()) {
        return 0;
    }
    if (take("eE")) {
        take("+-");
        if (!takeDigits()) {
            return 0;
        }
    }
    return text.size() - rest.size();
}

std::size_t valueLength(std::string_view text) {
    std::size_t depth = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const char c = text[at];
        const bool closes = c == '}' || c == ']';
        const bool endsScalar = closes || c == ',' || blanks.find(c) != blanks.npos;
        if (depth == 0 && endsScalar) {
            return at;
        }
        depth += c == '{' || c == '[' ? 1 : 0;
        depth -= closes ? 1 : 0;
        at += c == '"' ? stringLength(text.substr(at)) : 1;
        if (depth == 0 && (closes || c == '"')) {
            return at;
        }
    }
    return at;
}

QString decoded(std::string_view spelled) {
    QString result;
    while (!spelled.empty()) {
        const auto plain = std::min(spelled.find('\\'), spelled.size());
        result += textOf(spelled.substr(0, plain));
        spelled.remove_prefix(plain);
        if (!spelled.empty()) {
            result += unescaped(spelled);
            const std::size_t length = spelled.substr(0, 2) == "\\u" ? 6 : 2;
            spelled.remove_prefix(std::min(length, spelled.size()));
        }
    }
    return result;
}

std::vector<Member> of(std::string_view object) {
    std::vector<Member> result;
    // Before the brace there may be a byte order mark.
    object.remove_prefix(std::min(object.find('{'), object.size()));
    passOver(object, '{');
    while (object.starts_with('"')) {
        const std::string_view key = takeFront(object, stringLength(object));
        passOver(object, ':');
        const std::string_view value = takeFront(object, valueLength(object));
        passOver(object, ',');
        result.push_back({key.substr(1, key.size() - 2), value});
    }
    return result;
}

std::optional<std::string_view> find(std::string_view object, QStringView key) {
    const auto members = of(object);
    const auto found = std::ranges::find_if(
        members, [key](const Member &member) { return decoded(member.key) == key; });
    return found != members.end() ? std::optional(found->value) : std::nullopt;
}

} // namespace morvane::JsonMembers
