#include "Core/Agents/AgentRelease.h"

#include <algorithm>
#include <array>

namespace morvane {

std::optional<AgentRelease> AgentRelease::parse(QStringView text) {
    constexpr qsizetype mostDigits = 6; // more than any release has, few enough for an int
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto count = std::find_if_not(text.begin(), text.end(), isDigit) - text.begin();
        if (count < 1 || count > mostDigits) {
            return std::nullopt;
        }
        numbers[i] = text.first(count).toInt();
        text = text.sliced(count);
        if (i + 1 < numbers.size()) {
            if (!text.startsWith(u'.')) {
                return std::nullopt;
            }
            text = text.sliced(1);
        }
    }
    const bool ends = text.isEmpty() || text.front() == u'-' || text.front() == u'+';
    return ends ? std::optional(AgentRelease{numbers[0], numbers[1], numbers[2]}) : std::nullopt;
}

} // namespace morvane
