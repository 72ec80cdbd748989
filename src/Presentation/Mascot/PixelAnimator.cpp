#include "Presentation/Mascot/PixelAnimator.h"

#include "Platform/MotionPreference.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr Seconds blinkingTime(3);

} // namespace

PixelAnimator::PixelAnimator(PixelTimeline &timeline, Scheduler &scheduler,
                             MotionPreference &motion, double pixelSize, QWidget *parent)
    : PixelFrameView(pixelSize, parent), m_timeline(timeline), m_scheduler(scheduler),
      m_motion(motion) {
    connect(&m_motion, &MotionPreference::changed, this, &PixelAnimator::refresh);
    refresh();
}

void PixelAnimator::setMode(Mode mode, std::optional<Date> stateSince) {
    const SettleKey key{mode, stateSince};
    if (key == m_settleKey) {
        return;
    }
    m_settleKey = key;
    m_settlesAt = stateSince.value_or(m_scheduler.now()) + blinkingTime;
    m_doneSettled = false;
    refresh();
}

void PixelAnimator::refresh() {
    settle();
    const auto state = m_settleKey.mode.session;
    const bool rests = m_motion.isReduced() || m_doneSettled;
    m_sequence = rests ? PixelSequence::atRest(state) : PixelSequence::of(state);
    follow();
    showStep();
}

void PixelAnimator::settle() {
    m_settling.cancel();
    if (m_settleKey.mode.session != SessionState::done || m_doneSettled) {
        return;
    }
    // A clock that is set back would keep the mascot blinking for as long as it was set back by.
    const Seconds wait = std::min(blinkingTime, Seconds(m_settlesAt - m_scheduler.now()));
    if (wait <= Seconds(0)) {
        m_doneSettled = true;
    } else if (isVisible() && !m_motion.isReduced()) {
        m_settling = m_scheduler.after(wait, [this] {
            m_doneSettled = true;
            refresh();
        });
    }
}

void PixelAnimator::follow() {
    if (!isAnimated() || !isVisible()) {
        m_beat.reset();
        return;
    }
    m_beat = m_timeline.follow(m_sequence.interval, [this] { step(); });
}

void PixelAnimator::step() {
    // The mascot is scrolled out of sight; its next paint event starts the beat again.
    if (visibleRegion().isEmpty()) {
        m_beat.reset();
        return;
    }
    showStep();
}

void PixelAnimator::showStep() {
    const auto &frames = m_sequence.frames;
    const qsizetype shown = isAnimated() ? m_timeline.step(m_sequence.interval) % frames.size() : 0;
    setFrame(frames[shown], m_sequence.color);
    setOutlined(!isAnimated());
    emit stepped();
}

void PixelAnimator::showEvent(QShowEvent *event) {
    PixelFrameView::showEvent(event);
    refresh();
}

void PixelAnimator::hideEvent(QHideEvent *event) {
    PixelFrameView::hideEvent(event);
    m_settling.cancel();
    m_beat.reset();
    emit stepped();
}

void PixelAnimator::paintEvent(QPaintEvent *event) {
    if (isAnimated() && isVisible() && !m_beat) {
        refresh();
    }
    PixelFrameView::paintEvent(event);
}

} // namespace morvane

#include "moc_PixelAnimator.cpp"
