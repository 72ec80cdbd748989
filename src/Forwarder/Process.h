#pragma once

#include <cstddef>
#include <string_view>

namespace morvane {

/// What the kernel tells of a process; all but its number zero where it tells nothing.
struct Process {
    long id = 0;
    long parent = 0;
    long session = 0;
    long terminal = 0;
    long startedAt = 0; ///< clock ticks since the machine has started
};

/// The number of this process. Asks only once, as the next one does.
[[nodiscard]] long ownNumber();

/// Whether the numbers under /proc are those of our own number space. A sandbox may have the /proc
/// of the machine around it, where others have its numbers.
[[nodiscard]] bool isProcOurs();

/// Asks for the same process only once, and for none where /proc isn't ours.
[[nodiscard]] Process processOf(long id);

/// Text of a fixed room; what does not fit is cut off.
struct ShortText {
    char bytes[64];
    size_t size = 0;

    void add(std::string_view text);
    void add(long number);
};

/// The path of a process's file under /proc, as the kernel takes it.
[[nodiscard]] ShortText procPath(long id, std::string_view file);

/// Reads the beginning of a file into the room; 0 where nothing can be read.
[[nodiscard]] size_t readFile(const char *path, char *room, size_t roomSize);

} // namespace morvane
