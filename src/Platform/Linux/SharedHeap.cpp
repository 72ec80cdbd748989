#include "Platform/Linux/SharedHeap.h"

#include <malloc.h>

namespace morvane {

void shareOneHeap() {
#ifdef M_ARENA_MAX // glibc's; others have one heap for all anyway
    ::mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace morvane
