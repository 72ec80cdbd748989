#pragma once

#include <optional>

namespace morvane::CommandLine {

/// Answers what is asked on the command line: `--help` and `--version` on standard output, anything
/// else by one line on standard error. Yields the exit status with which the program is then to
/// end, and none where nothing was asked, as at a login. Needs no application object, and touches
/// nothing else.
std::optional<int> answer(int argc, const char *const *argv);

} // namespace morvane::CommandLine
