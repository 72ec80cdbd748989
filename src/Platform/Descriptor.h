#pragma once

#include <unistd.h>
#include <utility>

namespace morvane {

/// A file descriptor that is closed with its owner. A negative number stands for none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }

    int number() const { return m_number; }

private:
    int m_number;
};

} // namespace morvane
