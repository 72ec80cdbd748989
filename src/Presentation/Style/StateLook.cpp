#include "Presentation/Style/StateLook.h"

#include "Presentation/Style/Colors.h"

namespace morvane {

namespace {

constexpr QColor orange(255, 159, 10);
constexpr QColor green(48, 209, 88);
constexpr QColor red(255, 69, 58);
constexpr QColor blue(10, 132, 255);
constexpr QColor lightGray(220, 220, 226); // light, since every pixel of an idle mascot is faint
// No desktop tells whether its panel is light or dark; this can be seen on both.
constexpr QColor gray(142, 142, 147);

} // namespace

StateLook StateLook::of(std::optional<SessionState> state) {
    if (!state) {
        return {lightGray, gray, tr("no sessions")};
    }
    switch (*state) {
    case SessionState::working:
        return {Colors::mascot, blue, tr("working")};
    case SessionState::needsInput:
        return {orange, red, tr("needs your input")};
    case SessionState::done:
        return {green, green, tr("done")};
    case SessionState::failed:
        return {red, orange, tr("failed")};
    case SessionState::idle:
        break;
    }
    return {lightGray, gray, tr("idle")};
}

} // namespace morvane
