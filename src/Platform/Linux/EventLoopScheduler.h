#pragma once

#include "Platform/Scheduler.h"

#include <QObject>

#include <atomic>

namespace morvane {

/// The scheduler of the main thread, over its Qt event loop. Made on that thread and owned by
/// `PlatformServices`.
class EventLoopScheduler : public QObject, public Scheduler {
    Q_OBJECT

public:
    Date now() const override;
    Task after(Seconds delay, std::function<void()> action) override;
    void post(std::function<void()> action) override;

private:
    void countDown();

    std::atomic<int> m_posted = 0; ///< actions that haven't run yet
    int m_mostPosted = 0;          ///< the peak since `m_posted` was 0; main thread only
};

} // namespace morvane
