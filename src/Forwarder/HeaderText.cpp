#include "HeaderText.h"

#include <cstddef>

namespace morvane {

namespace {

constexpr size_t longestText = 1024;

/// How many bytes follow the first one of a UTF-8 character, and the bounds of the second one;
/// negative for a control character, or a byte that can't be the first.
int followers(unsigned char first, unsigned char &low, unsigned char &high) {
    low = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    high = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    if (first < 0x80)
        return first < ' ' || first == 0x7f ? -1 : 0;
    if (first < 0xc2 || first > 0xf4)
        return -1;
    return first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
}

/// The size of the character that the text begins with; 0 if it begins with none.
size_t firstCharacter(std::string_view text) {
    unsigned char low = 0;
    unsigned char high = 0;
    const int count = followers(static_cast<unsigned char>(text.front()), low, high);
    if (count < 0 || text.size() <= static_cast<size_t>(count))
        return 0;
    for (int i = 1; i <= count; ++i, low = 0x80, high = 0xbf) {
        const auto next = static_cast<unsigned char>(text[static_cast<size_t>(i)]);
        if (next < low || next > high)
            return 0;
    }
    return static_cast<size_t>(count) + 1;
}

} // namespace

bool fitsInHeader(std::string_view text) {
    while (!text.empty()) {
        const size_t size = firstCharacter(text);
        if (size == 0)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

std::string_view cleaned(char *text) {
    std::string_view rest{text};
    if (rest.size() > longestText)
        return {};
    size_t kept = 0;
    while (!rest.empty()) {
        const size_t size = firstCharacter(rest);
        for (size_t i = 0; i < size; ++i)
            text[kept++] = rest[i];
        rest.remove_prefix(size == 0 ? 1 : size);
    }
    text[kept] = '\0';
    return {text, kept};
}

} // namespace morvane
