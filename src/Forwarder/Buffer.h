#pragma once

#include <cstddef>
#include <string_view>

namespace morvane {

/// Bytes that grow at their end, freed only by the end of the process. Declare it static and
/// constinit, so that the first bytes lie in the program's own pages: the first page of a mapping
/// costs the kernel page tables as well, which made a hook slower by a thirtieth.
class Buffer {
public:
    /// Makes sure that room() is not empty; false when there is no memory.
    [[nodiscard]] bool reserve();
    [[nodiscard]] char *room() { return m_bytes + m_size; }
    [[nodiscard]] size_t roomSize() const { return m_capacity - m_size; }
    void grow(size_t size) { m_size += size; }
    [[nodiscard]] bool append(std::string_view text);
    [[nodiscard]] std::string_view view() const { return {m_bytes, m_size}; }

private:
    char *m_bytes = nullptr; ///< none yet, m_first, or a mapping once there are more
    size_t m_size = 0;
    size_t m_capacity = 0;
    char m_first[65536] = {};
};

} // namespace morvane
