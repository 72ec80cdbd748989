#include "RepositoryHead.h"

#include "Kernel.h"
#include "Process.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace morvane {

namespace {

constexpr size_t longestPath = 4096; // with the zero at its end
constexpr int mostFolders = 25;

/// A path with a zero byte at its end; an empty one if it would be too long.
struct Path {
    char bytes[longestPath];
    size_t size = 0;

    void add(std::string_view text) {
        for (const char c : text) {
            if (size < sizeof bytes)
                bytes[size++] = c;
        }
        bytes[size < sizeof bytes ? size : 0] = '\0';
    }
};

/// The type of the file at this path, 0 if there is none.
unsigned typeOf(const Path &path) {
    struct stat status;
    const long result = kernel::call(SYS_newfstatat, AT_FDCWD, path.bytes, &status, 0);
    return result < 0 ? 0 : status.st_mode & S_IFMT;
}

/// Empty if it is too long. A pipe or a terminal is not even opened.
std::string_view firstLine(const Path &path, char (&room)[longestPath]) {
    if (typeOf(path) != S_IFREG)
        return {};
    std::string_view text{room, readFile(path.bytes, room, sizeof room)};
    const size_t end = text.find('\n');
    if (end == std::string_view::npos && text.size() == sizeof room)
        return {};
    text.remove_suffix(end == std::string_view::npos ? 0 : text.size() - end);
    return text;
}

} // namespace

std::string_view folderIn(std::string_view status) {
    constexpr std::string_view key = R"("current_dir":")";
    const size_t start = status.find(key);
    if (start == std::string_view::npos)
        return {};
    status.remove_prefix(start + key.size());
    const size_t end = status.find('"');
    if (end == std::string_view::npos || !status.starts_with('/'))
        return {};
    status.remove_suffix(status.size() - end);
    const bool isPlain =
        status.find('\\') == std::string_view::npos && status.find('\n') == std::string_view::npos;
    return isPlain ? status : std::string_view{};
}

std::string_view headAround(std::string_view folder) {
    static char room[longestPath];
    static Path path;
    folder.remove_suffix(folder.ends_with('/') ? 1 : 0);
    unsigned type = 0;
    for (int count = 0; count < mostFolders; ++count) {
        path.size = 0;
        path.add(folder);
        path.add("/.git");
        type = typeOf(path);
        if (type != 0 || folder.empty())
            break;
        while (!folder.ends_with('/'))
            folder.remove_suffix(1);
        folder.remove_suffix(1);
    }
    if (type == S_IFREG) {
        // A linked worktree or a submodule says where its repository is.
        constexpr std::string_view mark = "gitdir: ";
        std::string_view link = firstLine(path, room);
        link.remove_prefix(link.starts_with(mark) ? mark.size() : 0);
        if (link.empty())
            return {};
        path.size = link.starts_with('/') ? 0 : folder.size() + 1;
        path.add(link);
    }
    path.add("/HEAD");
    return firstLine(path, room);
}

} // namespace morvane
