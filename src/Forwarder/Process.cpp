#include "Process.h"

#include "Kernel.h"

#include <fcntl.h>

namespace morvane {

namespace {

long number(std::string_view &text) {
    long value = 0;
    while (!text.empty() && text.front() >= '0' && text.front() <= '9') {
        value = 10 * value + (text.front() - '0');
        text.remove_prefix(1);
    }
    return value;
}

void skipField(std::string_view &text) {
    while (!text.empty() && text.front() != ' ')
        text.remove_prefix(1);
    if (!text.empty())
        text.remove_prefix(1);
}

Process askKernel(long id) {
    char bytes[1024];
    const size_t size = readFile(procPath(id, "/stat").bytes, bytes, sizeof bytes);

    // The name may hold blanks and parentheses, so the fields count from the last parenthesis.
    size_t begin = size;
    while (begin > 0 && bytes[begin - 1] != ')')
        --begin;
    if (begin == 0)
        return {};
    std::string_view fields{bytes + begin, size - begin};
    skipField(fields); // the blank behind the name
    skipField(fields); // state
    Process process;
    process.parent = number(fields);
    skipField(fields);
    skipField(fields); // process group
    process.session = number(fields);
    skipField(fields);
    process.terminal = number(fields);
    constexpr int untilStart = 15; // from the terminal, the 7th field, to the 22nd
    for (int i = 0; i < untilStart; ++i)
        skipField(fields);
    process.startedAt = number(fields);
    return process;
}

bool askWhetherProcIsOurs() {
    char self[16];
    const long size = kernel::call(SYS_readlinkat, AT_FDCWD, "/proc/self", self, sizeof self);
    ShortText own;
    own.add(ownNumber());
    return size > 0 && std::string_view{self, static_cast<size_t>(size)} ==
                           std::string_view{own.bytes, own.size};
}

} // namespace

void ShortText::add(std::string_view text) {
    for (const char c : text) {
        if (size < sizeof bytes)
            bytes[size++] = c;
    }
}

void ShortText::add(long number) {
    if (number >= 10)
        add(number / 10);
    const char digit = static_cast<char>('0' + number % 10);
    add({&digit, 1});
}

ShortText procPath(long id, std::string_view file) {
    ShortText path;
    path.add("/proc/");
    path.add(id);
    path.add(file);
    const char end = '\0';
    path.add({&end, 1});
    return path;
}

size_t readFile(const char *path, char *room, size_t roomSize) {
    const long file = kernel::call(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    const long size = kernel::call(SYS_read, file, room, roomSize);
    kernel::call(SYS_close, file);
    return size < 0 ? 0 : static_cast<size_t>(size);
}

long ownNumber() {
    static const long number = kernel::call(SYS_getpid);
    return number;
}

bool isProcOurs() {
    static const bool isOurs = askWhetherProcIsOurs();
    return isOurs;
}

Process processOf(long id) {
    constexpr size_t most = 8;
    static Process asked[most];
    static size_t count = 0;
    for (size_t i = 0; i < count; ++i) {
        if (asked[i].id == id)
            return asked[i];
    }
    Process process = isProcOurs() ? askKernel(id) : Process{};
    process.id = id;
    if (count < most)
        asked[count++] = process;
    return process;
}

} // namespace morvane
