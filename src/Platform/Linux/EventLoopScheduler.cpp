#include "Platform/Linux/EventLoopScheduler.h"

#include <QPointer>
#include <QTimer>

namespace morvane {

Date EventLoopScheduler::now() const {
    return std::chrono::system_clock::now();
}

Task EventLoopScheduler::after(Seconds delay, std::function<void()> action) {
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    // Coarse timers may come 5 % early or late; a whole minute's wake-up is shared gladly, but
    // nothing that a person sees or counts down.
    const bool coarse = delay >= Seconds(60);
    timer->setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, timer, [timer, action = std::move(action)] {
        // The action may well drop its own task, so nothing of the timer is touched after it.
        const auto run = action;
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
    QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

} // namespace morvane

#include "moc_EventLoopScheduler.cpp"
