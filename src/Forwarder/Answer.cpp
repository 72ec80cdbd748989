#include "Answer.h"

#include <cstddef>

namespace morvane {

namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isNamed(std::string_view line, std::string_view lowerCaseName) {
    if (line.size() <= lowerCaseName.size() || line[lowerCaseName.size()] != ':')
        return false;
    for (size_t i = 0; i < lowerCaseName.size(); ++i) {
        if (lowered(line[i]) != lowerCaseName[i])
            return false;
    }
    return true;
}

/// Zero for anything but a plain number, and for one that no memory could hold.
size_t lengthIn(std::string_view digits) {
    constexpr size_t limit = size_t{1} << 40U;
    while (!digits.empty() && (digits.front() == ' ' || digits.front() == '\t'))
        digits.remove_prefix(1);
    size_t length = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9' || length > limit)
            return 0;
        length = 10 * length + static_cast<size_t>(digit - '0');
    }
    return length;
}

} // namespace

std::string_view completeBody(std::string_view response) {
    constexpr std::string_view status = "HTTP/1.1 200 ";
    constexpr std::string_view lengthName = "content-length";
    if (!response.starts_with(status))
        return {};
    size_t length = 0;
    for (;;) {
        const size_t end = response.find("\r\n");
        if (end == std::string_view::npos)
            return {};
        const std::string_view line{response.data(), end};
        response.remove_prefix(end + 2);
        if (line.empty())
            break;
        if (isNamed(line, lengthName))
            length = lengthIn({line.data() + lengthName.size() + 1, end - lengthName.size() - 1});
    }
    return response.size() < length ? std::string_view{}
                                    : std::string_view{response.data(), length};
}

} // namespace morvane
