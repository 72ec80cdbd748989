#pragma once

#include <string_view>

namespace morvane {

/// The file of the program that runs this hook: the nearest ancestor's that is not there only to
/// run hook.sh. Where that is an interpreter, the script that it runs. An absolute path of no more
/// than 1024 bytes of UTF-8 without control characters; empty where there is no such path.
[[nodiscard]] std::string_view agentProgram();

} // namespace morvane
