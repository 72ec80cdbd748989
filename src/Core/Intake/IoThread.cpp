#include "Core/Intake/IoThread.h"

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <memory>

namespace morvane {

namespace {

/// One timer, and whether it still counts: a timer that has fired can no longer be stopped, while
/// its action may still wait for its turn.
struct Alarm {
    explicit Alarm(asio::io_context &context) : timer(context) {}

    asio::steady_timer timer;
    bool cancelled = false;
};

} // namespace

// One thread runs the context, so what it posts to itself needs neither lock nor wake-up.
IoThread::IoThread() : m_context(1), m_work(m_context.get_executor()) {}

IoThread::~IoThread() {
    stop();
}

void IoThread::stop() {
    m_context.stop();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void IoThread::start() {
    m_thread = std::thread([this] { m_context.run(); });
}

Date IoThread::now() const {
    return m_madeAt + std::chrono::duration_cast<Date::duration>(std::chrono::steady_clock::now() -
                                                                 m_madeAtSteady);
}

Task IoThread::after(Seconds delay, std::function<void()> action) {
    const auto alarm = std::make_shared<Alarm>(m_context);
    alarm->timer.expires_after(std::chrono::ceil<asio::steady_timer::duration>(delay));
    alarm->timer.async_wait([alarm, action = std::move(action)](const asio::error_code &error) {
        if (!error && !alarm->cancelled) {
            action();
        }
    });
    return Task([pending = std::weak_ptr(alarm)] {
        if (const auto armed = pending.lock()) {
            armed->cancelled = true;
            armed->timer.cancel();
        }
    });
}

void IoThread::post(std::function<void()> action) {
    asio::post(m_context, std::move(action));
}

} // namespace morvane
