#include "Platform/Linux/EventLoopScheduler.h"

#include "Platform/Linux/SharedHeap.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr int burst = 1000; // actions that wait at once

} // namespace

Date EventLoopScheduler::now() const {
    return std::chrono::system_clock::now();
}

Task EventLoopScheduler::after(Seconds delay, std::function<void()> action) {
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    // Coarse timers share wake-ups but may fire 5 % early or late. That suits delays of a minute or
    // more, but nothing that a person sees or counts down.
    const bool coarse = delay >= Seconds(60);
    timer->setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, timer, [timer, action = std::move(action)]() mutable {
        // The action may well drop its own task, so nothing of the timer is touched after it.
        const auto run = std::move(action);
        timer->deleteLater();
        run();
    });
    timer->start(std::chrono::ceil<std::chrono::milliseconds>(delay));
    return Task([pending = QPointer<QTimer>(timer)] {
        if (pending) {
            pending->stop();
            pending->deleteLater();
        }
    });
}

void EventLoopScheduler::post(std::function<void()> action) {
    ++m_posted;
    QMetaObject::invokeMethod(
        this,
        [this, action = std::move(action)] {
            action();
            countDown();
        },
        Qt::QueuedConnection);
}

/// The actions of a burst take megabytes while they wait, and leave the heap fragmented.
void EventLoopScheduler::countDown() {
    const int waiting = --m_posted;
    m_mostPosted = std::max(m_mostPosted, waiting);
    if (waiting == 0 && std::exchange(m_mostPosted, 0) >= burst) {
        giveBackFreeMemory();
    }
}

} // namespace morvane

#include "moc_EventLoopScheduler.cpp"
