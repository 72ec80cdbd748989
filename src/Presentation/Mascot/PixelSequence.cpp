#include "Presentation/Mascot/PixelSequence.h"

#include "Presentation/Mascot/PixelArt.h"

namespace morvane {

namespace {

using namespace std::chrono_literals;

constexpr QColor yellow(255, 214, 10);
constexpr QColor orange(255, 159, 10);
constexpr QColor green(48, 209, 88);
constexpr QColor red(255, 69, 58);
constexpr QColor gray(220, 220, 226); // light, since all of it is drawn faint

} // namespace

PixelSequence PixelSequence::of(std::optional<SessionState> state) {
    switch (state.value_or(SessionState::idle)) {
    case SessionState::working:
        return {PixelArt::working(), 300ms, yellow};
    case SessionState::needsInput:
        return {PixelArt::needsInput(), 450ms, orange};
    case SessionState::done:
        return {PixelArt::done(), 250ms, green};
    case SessionState::failed:
        return {{PixelArt::alienA()}, 0ms, red};
    case SessionState::idle:
        break;
    }
    return {PixelArt::idle(), 0ms, gray};
}

PixelSequence PixelSequence::atRest(std::optional<SessionState> state) {
    PixelSequence result = of(state);
    result.frames = {result.frames.first()};
    return result;
}

} // namespace morvane
