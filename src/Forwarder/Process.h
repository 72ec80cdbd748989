#pragma once

#include <cstddef>
#include <string_view>

namespace morvane {

/// What the kernel tells of a process; all but `id` are zero if it tells nothing.
struct Process {
    long id = 0;
    long parent = 0;
    long session = 0;
    long terminal = 0;
    long startedAt = 0; ///< clock ticks since boot
};

/// The id of this process. Asks the kernel only once, like `isProcOurs`.
[[nodiscard]] long ownNumber();

/// Whether the ids under /proc are those of our own PID namespace. A sandbox may have the /proc of
/// the machine around it, where other processes have its ids.
[[nodiscard]] bool isProcOurs();

/// Asks only once for each of the first eight processes, and never if /proc isn't ours.
[[nodiscard]] Process processOf(long id);

/// Text of at most 64 bytes; what does not fit is cut off.
struct ShortText {
    char bytes[64];
    size_t size = 0;

    void add(std::string_view text);
    void add(long number);
};

/// The path of a process's file under /proc, with a zero byte at its end.
[[nodiscard]] ShortText procPath(long id, std::string_view file);

/// Reads the beginning of a file into `room`, and returns its size; 0 if nothing can be read.
[[nodiscard]] size_t readFile(const char *path, char *room, size_t roomSize);

} // namespace morvane
