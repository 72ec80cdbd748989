#pragma once

#include "Platform/Scheduler.h"

#include <QObject>

namespace morvane {

/// The scheduler of the main thread, over its Qt event loop. Made on that thread and owned by
/// `main`.
class EventLoopScheduler : public QObject, public Scheduler {
    Q_OBJECT

public:
    Date now() const override;
    Task after(Seconds delay, std::function<void()> action) override;
    void post(std::function<void()> action) override;
};

} // namespace morvane
