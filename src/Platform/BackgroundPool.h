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

    /// Runs the work when a thread is free. It has to bring its values along, since whoever asked
    /// for it may be gone by then.
    virtual void run(std::function<void()> work) = 0;

    /// Runs the work, and then hands what it returns to `use` on the scheduler's thread, which is
    /// the owner's. Once the owner is gone the result is dropped.
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
