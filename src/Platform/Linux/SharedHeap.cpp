#include "Platform/Linux/SharedHeap.h"

#include <malloc.h>

namespace morvane {

void shareOneHeap() {
#ifdef M_ARENA_MAX // glibc's; others have one heap for all anyway
    ::mallopt(M_ARENA_MAX, 1);
#endif
}

void giveBackFreeMemory() {
#ifdef M_ARENA_MAX
    ::malloc_trim(0);
#endif
}

} // namespace morvane
