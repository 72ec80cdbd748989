#pragma once

#include "Process.h"

#include <string_view>

namespace morvane {

/// The process that runs this hook: the nearest ancestor that is not there only to run hook.sh.
struct Agent {
    long process = 0;           ///< 0 where none is found
    std::string_view arguments; ///< each with a zero byte behind it; cut off at 4096 bytes
};

/// `name` and `event` are the words that hook.sh was called with.
[[nodiscard]] Agent agent(std::string_view name, std::string_view event);

/// The file of the program that the agent runs, even if it is no longer there. If that is an
/// interpreter, the script that it runs. An absolute path of no more than 1024 bytes of UTF-8
/// without control characters; empty where there is no such path.
[[nodiscard]] std::string_view programOf(const Agent &agent);

/// What tells the agent's process from every other: its id, its start in clock ticks since boot,
/// and its PID namespace, with blanks between them. Empty if the kernel doesn't tell.
[[nodiscard]] ShortText identityOf(const Agent &agent);

} // namespace morvane
