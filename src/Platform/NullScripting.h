#pragma once

#include "Platform/Scheduler.h"
#include "Platform/Scripting.h"

namespace morvane {

/// For a machine whose applications can't be scripted.
class NullScripting final : public Scripting {
public:
    explicit NullScripting(Scheduler &scheduler) : m_scheduler(scheduler) {}

    void run(const QString &,
             std::function<void(const std::optional<QString> &)> finished) override {
        m_scheduler.post([finished = std::move(finished)] { finished(std::nullopt); });
    }

private:
    Scheduler &m_scheduler;
};

} // namespace morvane
