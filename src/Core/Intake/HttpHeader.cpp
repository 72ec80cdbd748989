#include "Core/Intake/HttpHeader.h"

#include <algorithm>
#include <array>

namespace morvane {

namespace {

/// In lower case, in the order of the enumeration.
constexpr auto httpHeaderNames = std::to_array<std::string_view>({
    "content-length",
    "x-morvane-token",
    "x-morvane-agent",
    "x-morvane-decision",
    "x-hook-event",
    "x-iterm-session",
    "x-term-program",
    "x-host-bundle",
    "x-tty",
    "x-tmux-pane",
    "x-tmux-server",
    "x-wezterm-pane",
    "x-kitty-window",
    "x-zellij-session",
    "x-orca-terminal",
    "x-morvane-process",
    "x-morvane-program",
    "x-morvane-kitty-listen-on",
    "x-morvane-wezterm-socket",
});
static_assert(httpHeaderNames.size() == httpHeaderCount);

bool isSameLetter(char given, char lowerCase) {
    const bool isUpperCase = given >= 'A' && given <= 'Z';
    return (isUpperCase ? static_cast<char>(given - 'A' + 'a') : given) == lowerCase;
}

} // namespace

std::optional<HttpHeader> httpHeader(std::string_view name) {
    const auto found = std::ranges::find_if(httpHeaderNames, [name](std::string_view known) {
        return known.size() == name.size() && std::ranges::equal(name, known, isSameLetter);
    });
    return found != httpHeaderNames.end()
               ? std::optional(static_cast<HttpHeader>(found - httpHeaderNames.begin()))
               : std::nullopt;
}

} // namespace morvane
