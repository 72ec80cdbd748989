#pragma once

namespace morvane {

/// Lets this process open as many files and connections as the system allows it at most, instead of
/// the usual 1,024. To be called once at the start; a refusal changes nothing.
void raiseDescriptorLimit();

} // namespace morvane
