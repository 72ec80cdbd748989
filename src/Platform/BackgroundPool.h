#pragma once

#include "Platform/Scheduler.h"

#include <QPointer>

#include <functional>
#include <utility>

namespace morvane {

/// Threads for work that the main thread must not wait for, such as reading somebody else's files.
/// Safe from any thread.
class BackgroundPool {
public:
    BackgroundPool() = default;
    BackgroundPool(const BackgroundPool &) = delete;
    BackgroundPool &operator=(const BackgroundPool &) = delete;
    virtual ~BackgroundPool() = default;

    /// Runs the work when a thread is free. The work must own what it uses, since its caller may be
    /// gone by then.
    virtual void run(std::function<void()> work) = 0;

    /// Runs the work, then calls `use` with its result on the scheduler's thread, which is also the
    /// owner's. The result is dropped if the owner is gone by then.
    template <typename Work, typename Use>
    void compute(Work work, Scheduler &scheduler, QObject *owner, Use use) {
        run([work = std::move(work), use = std::move(use), owner = QPointer<QObject>(owner),
             &scheduler]() mutable {
            scheduler.post([result = work(), use = std::move(use), owner] {
                if (owner) {
                    use(result);
                }
            });
        });
    }
};

} // namespace morvane
