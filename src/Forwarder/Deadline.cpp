#include "Deadline.h"

#include "Kernel.h"

#include <cerrno>
#include <ctime>
#include <poll.h>

namespace morvane {

namespace {

timespec now() {
    timespec time{};
    kernel::call(SYS_clock_gettime, CLOCK_MONOTONIC, &time);
    return time;
}

} // namespace

Deadline::Deadline(long milliseconds) {
    const timespec start = now();
    const long nanoseconds = start.tv_nsec + milliseconds % 1000 * 1'000'000;
    m_seconds = start.tv_sec + milliseconds / 1000 + nanoseconds / 1'000'000'000;
    m_nanoseconds = nanoseconds % 1'000'000'000;
}

bool Deadline::await(int descriptor, short events) const {
    for (;;) {
        const timespec time = now();
        timespec left{m_seconds - time.tv_sec, m_nanoseconds - time.tv_nsec};
        if (left.tv_nsec < 0) {
            left.tv_nsec += 1'000'000'000;
            --left.tv_sec;
        }
        if (left.tv_sec < 0)
            return false;
        pollfd watched{descriptor, events, 0};
        const long ready = kernel::call(SYS_ppoll, &watched, 1, &left, nullptr, 0);
        if (ready != -EINTR)
            return ready > 0;
    }
}

} // namespace morvane
