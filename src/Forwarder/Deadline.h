#pragma once

namespace morvane {

/// A moment by which something must have happened, on the monotonic clock.
class Deadline {
public:
    explicit Deadline(long milliseconds);

    /// Blocks until the descriptor is ready for the poll events or has failed; false once the
    /// moment has passed.
    [[nodiscard]] bool await(int descriptor, short events) const;

private:
    long m_seconds;
    long m_nanoseconds;
};

} // namespace morvane
