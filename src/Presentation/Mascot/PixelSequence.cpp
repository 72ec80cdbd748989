#include "Presentation/Mascot/PixelSequence.h"

#include "Presentation/Mascot/PixelArt.h"
#include "Presentation/Style/StateLook.h"

namespace morvane {

namespace {

using namespace std::chrono_literals;

struct Movement {
    QList<PixelFrame> frames;
    std::chrono::milliseconds interval{0};
};

Movement movement(std::optional<SessionState> state) {
    switch (state.value_or(SessionState::idle)) {
    case SessionState::working:
        return {PixelArt::working(), 300ms};
    case SessionState::needsInput:
        return {PixelArt::needsInput(), 450ms};
    case SessionState::done:
        return {PixelArt::done(), 250ms};
    case SessionState::failed:
        return {{PixelArt::alienA()}};
    case SessionState::idle:
        break;
    }
    return {PixelArt::idle()};
}

} // namespace

PixelSequence PixelSequence::of(std::optional<SessionState> state) {
    const auto [frames, interval] = movement(state);
    return {frames, interval, StateLook::of(state).mascot};
}

PixelSequence PixelSequence::atRest(std::optional<SessionState> state) {
    PixelSequence result = of(state);
    result.frames = {result.frames.first()};
    return result;
}

} // namespace morvane
