#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace morvane {

/// Writes hook.sh into the folder, for a server on this port. It uses the client where one lies
/// beside it, and curl otherwise.
std::filesystem::path renderedHook(const std::filesystem::path &folder, int port,
                                   const std::string &token);

/// Microseconds from the start of the process to its end, with the payload on its input, or a usual
/// one. A process that fails ends the measurement.
double timeOfProcess(const std::vector<std::string> &arguments, const std::string &payload);
double timeOfProcess(const std::vector<std::string> &arguments);

} // namespace morvane
