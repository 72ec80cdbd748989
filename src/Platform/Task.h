#pragma once

#include <functional>
#include <utility>

namespace morvane {

/// A delayed action that is still to come. Whoever holds the task owns the action's future: its
/// destruction, or an assignment over it, cancels the action. Cancelling one that has already run
/// does nothing.
class Task {
public:
    Task() = default;
    explicit Task(std::function<void()> cancelAction) : m_cancel(std::move(cancelAction)) {}
    Task(Task &&other) noexcept : m_cancel(std::exchange(other.m_cancel, nullptr)) {}
    Task &operator=(Task &&other) noexcept {
        if (this != &other) {
            cancel();
            m_cancel = std::exchange(other.m_cancel, nullptr);
        }
        return *this;
    }
    Task(const Task &) = delete;
    Task &operator=(const Task &) = delete;
    ~Task() { cancel(); }

    void cancel() {
        if (const auto action = std::exchange(m_cancel, nullptr)) {
            action();
        }
    }

private:
    std::function<void()> m_cancel;
};

} // namespace morvane
