#include "Presentation/StateMark.h"

#include "Presentation/PixelArt.h"

namespace morvane {

namespace {

constexpr QColor yellow(255, 214, 10);
constexpr QColor orange(255, 159, 10);
constexpr QColor green(48, 209, 88);
constexpr QColor red(255, 69, 58);
constexpr QColor gray(152, 152, 157);

} // namespace

StateMark StateMark::of(std::optional<SessionState> state) {
    switch (state.value_or(SessionState::idle)) {
    case SessionState::working:
        return {PixelArt::alienA(), yellow};
    case SessionState::needsInput:
        return {PixelArt::alienA(), orange};
    case SessionState::done:
        return {PixelArt::alienDone(), green};
    case SessionState::failed:
        return {PixelArt::alienA(), red};
    case SessionState::idle:
        break;
    }
    return {PixelArt::alienA().dimmed(), gray};
}

} // namespace morvane
