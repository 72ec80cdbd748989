#pragma once

#include <optional>

namespace morvane::CommandLine {

/// Handles the command line: answers `--help` and `--version` on standard output, and anything
/// unknown by one line on standard error. Returns the exit status to end the program with, or none
/// if it is to start, as at a login. Needs no application object, and touches nothing else.
std::optional<int> answer(int argc, const char *const *argv);

} // namespace morvane::CommandLine
