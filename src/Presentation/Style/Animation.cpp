#include "Presentation/Style/Animation.h"

#include <utility>

namespace morvane {

namespace {

constexpr Seconds frame(1.0 / 60);

} // namespace

void Animation::start(Seconds duration, std::function<void(double)> step,
                      std::function<void()> finished) {
    m_startedAt = m_scheduler.now();
    m_duration = duration;
    m_step = std::move(step);
    m_finished = std::move(finished);
    advance();
}

void Animation::stop() {
    m_tick.cancel();
    m_step = nullptr;
    m_finished = nullptr;
}

void Animation::advance() {
    const double share =
        m_duration > Seconds(0) ? Seconds(m_scheduler.now() - m_startedAt) / m_duration : 1;
    // A clock that is set back would hold the animation up for as long as it was set back by.
    const bool isOver = share >= 1 || share < 0;
    if (!isOver) {
        m_tick = m_scheduler.after(frame, [this] { advance(); });
        m_step(share);
        return;
    }
    const auto step = std::exchange(m_step, nullptr);
    const auto finished = std::exchange(m_finished, nullptr);
    m_tick.cancel();
    step(1);
    if (finished) {
        finished();
    }
}

} // namespace morvane
