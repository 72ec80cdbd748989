#pragma once

namespace morvane {

/// Lets this process open as many files and connections as the system allows it at most, instead of
/// the usual 1,024. To be called once at the start; a refusal changes nothing.
void raiseDescriptorLimit();

/// Gives a process that is to become another program the limit back that this one has been started
/// with, which is what programs count on. May be called between fork and exec.
void restoreDescriptorLimit();

} // namespace morvane
