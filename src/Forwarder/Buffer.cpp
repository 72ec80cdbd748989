#include "Buffer.h"

#include "Kernel.h"

#include <sys/mman.h>

namespace morvane {

bool Buffer::reserve() {
    if (m_size < m_capacity)
        return true;
    if (m_capacity == 0) {
        m_bytes = m_first;
        m_capacity = sizeof m_first;
        return true;
    }
    const size_t capacity = 2 * m_capacity;
    const bool isMapped = m_bytes != m_first;
    const long address =
        isMapped ? kernel::call(SYS_mremap, m_bytes, m_capacity, capacity, MREMAP_MAYMOVE)
                 : kernel::call(SYS_mmap, nullptr, capacity, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (address < 0)
        return false;
    m_bytes = reinterpret_cast<char *>(address);
    m_capacity = capacity;
    if (!isMapped)
        __builtin_memcpy(m_bytes, m_first, m_size);
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
