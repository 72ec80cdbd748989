#pragma once

#include <sys/types.h>

namespace morvane {

/// Lets this process open as many files and connections as the system allows it at most, instead of
/// the usual 1,024. To be called once at the start; a refusal changes nothing.
void raiseDescriptorLimit();

/// Gives a process that is to become another program, or just has, the limit back that this one has
/// been started with, which is what programs count on. 0 stands for this process. May be called
/// between fork and exec.
void restoreDescriptorLimit(pid_t process = 0);

} // namespace morvane
