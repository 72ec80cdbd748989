#include "Platform/Linux/DescriptorLimit.h"

#include <sys/resource.h>

namespace morvane {

namespace {

rlimit original{}; // empty until the limit has been raised

} // namespace

void raiseDescriptorLimit() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        original = limit;
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

void restoreDescriptorLimit(pid_t process) {
    if (original.rlim_max > 0) {
        ::prlimit(process, RLIMIT_NOFILE, &original, nullptr);
    }
}

} // namespace morvane
