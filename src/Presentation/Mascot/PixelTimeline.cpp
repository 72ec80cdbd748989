#include "Presentation/Mascot/PixelTimeline.h"

#include <utility>

namespace morvane {

namespace {

/// Ticks aim this far past the start of a step: the clock may be slowed down while they wait, and a
/// tick that came too early would need another one.
constexpr std::chrono::milliseconds beatMargin(1);

} // namespace

Task PixelTimeline::follow(Interval interval, std::function<void()> action) {
    Beat &beat = m_beats[interval];
    const int follower = ++m_lastFollower;
    beat.followers.emplace(follower, std::move(action));
    if (beat.followers.size() == 1) {
        aim(interval);
    }
    return Task([this, interval, follower] { leave(interval, follower); });
}

void PixelTimeline::aim(Interval interval) {
    const auto left = interval - m_scheduler.now().time_since_epoch() % interval;
    m_beats[interval].tick =
        m_scheduler.after(left + beatMargin, [this, interval] { advance(interval); });
}

void PixelTimeline::advance(Interval interval) {
    // Aimed first, so that the last follower to leave finds the tick to cancel.
    aim(interval);
    auto &followers = m_beats[interval].followers;
    for (auto next = followers.begin(); next != followers.end();) {
        const auto [follower, action] = *next;
        action();
        // The action may have removed any follower.
        next = followers.upper_bound(follower);
    }
}

void PixelTimeline::leave(Interval interval, int follower) {
    Beat &beat = m_beats[interval];
    beat.followers.erase(follower);
    if (beat.followers.empty()) {
        beat.tick.cancel();
    }
}

} // namespace morvane
