#pragma once

#include <sys/types.h>

namespace morvane {

/// Lets this process open as many files and connections as the system allows, instead of the usual
/// 1,024. Call once at the start; a refusal changes nothing.
void raiseDescriptorLimit();

/// Gives a process that is about to exec another program, or just has, the limit that this process
/// was started with, since programs count on that one. 0 stands for the calling process. May be
/// called between fork and exec.
void restoreDescriptorLimit(pid_t process = 0);

} // namespace morvane
