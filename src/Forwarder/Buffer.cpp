#include "Buffer.h"

#include "Kernel.h"

#include <sys/mman.h>

namespace morvane {

bool Buffer::reserve() {
    constexpr size_t firstCapacity = 65536;
    if (m_size < m_capacity)
        return true;
    const size_t capacity = m_capacity == 0 ? firstCapacity : 2 * m_capacity;
    const long address =
        m_capacity == 0 ? kernel::call(SYS_mmap, nullptr, capacity, PROT_READ | PROT_WRITE,
                                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                        : kernel::call(SYS_mremap, m_bytes, m_capacity, capacity, MREMAP_MAYMOVE);
    if (address < 0)
        return false;
    m_bytes = reinterpret_cast<char *>(address);
    m_capacity = capacity;
    return true;
}

bool Buffer::append(std::string_view text) {
    for (const char byte : text) {
        if (!reserve())
            return false;
        m_bytes[m_size++] = byte;
    }
    return true;
}

} // namespace morvane
