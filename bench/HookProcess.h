#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace morvane {

/// Our scripts that agents run.
enum class Script { hook, statusLine };

/// Writes the script into the folder, for a server on this port. The script uses the client if one
/// lies beside it, and curl otherwise.
std::filesystem::path rendered(Script script, const std::filesystem::path &folder, int port,
                               const std::string &token);

/// What an agent usually sends to the script.
std::string usualInput(Script script);

/// Seconds from the start of the process to its end. What it prints is lost; a process that fails
/// ends the measurement.
double timeOfProcess(const std::vector<std::string> &arguments, const std::string &input);

} // namespace morvane
