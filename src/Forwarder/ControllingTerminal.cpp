#include "ControllingTerminal.h"

#include "Kernel.h"

#include <cstddef>
#include <fcntl.h>

namespace morvane {

namespace {

struct Process {
    long parent = 0;
    long session = 0;
    long terminal = 0;
};

/// Text of a fixed room; what does not fit is cut off.
struct ShortText {
    char bytes[64];
    size_t size = 0;

    void add(std::string_view text) {
        for (const char c : text) {
            if (size < sizeof bytes)
                bytes[size++] = c;
        }
    }

    void add(long number) {
        if (number >= 10)
            add(number / 10);
        const char digit = static_cast<char>('0' + number % 10);
        add({&digit, 1});
    }
};

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

Process processOf(long id) {
    ShortText path;
    path.add("/proc/");
    path.add(id);
    path.add({"/stat", sizeof "/stat"});
    char bytes[1024];
    const long file = kernel::call(SYS_openat, AT_FDCWD, path.bytes, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    const long size = kernel::call(SYS_read, file, bytes, sizeof bytes);
    kernel::call(SYS_close, file);

    // The program's name may hold blanks and parentheses, so the fields count from the last one.
    long begin = size;
    while (begin > 0 && bytes[begin - 1] != ')')
        --begin;
    if (begin <= 0)
        return {};
    std::string_view fields{bytes + begin, static_cast<size_t>(size - begin)};
    skipField(fields); // the blank behind the name
    skipField(fields); // state
    Process process;
    process.parent = number(fields);
    skipField(fields);
    skipField(fields); // process group
    process.session = number(fields);
    skipField(fields);
    process.terminal = number(fields);
    return process;
}

std::string_view deviceOf(long terminal) {
    static ShortText path;
    const long major = (terminal >> 8) & 0xfff;
    const long minor = (terminal & 0xff) | ((terminal >> 12) & 0xfff00);
    constexpr long firstSerial = 64;
    if (major >= 136 && major <= 143) {
        path.add("/dev/pts/");
        path.add((major - 136) * 256 + minor);
    } else if (major == 4 && minor < firstSerial) {
        path.add("/dev/tty");
        path.add(minor);
    } else if (major == 4) {
        path.add("/dev/ttyS");
        path.add(minor - firstSerial);
    }
    return {path.bytes, path.size};
}

} // namespace

std::string_view controllingTerminal() {
    long id = kernel::call(SYS_getpid);
    Process process = processOf(id);
    while (process.terminal == 0 && process.parent > 1) {
        // A session has one terminal or none, so the next to ask is whoever started its leader;
        // where the leader is gone, the parent.
        const Process leader = process.session == id ? process : processOf(process.session);
        id = leader.parent > 1 ? leader.parent : process.parent;
        process = processOf(id);
    }
    return deviceOf(process.terminal);
}

} // namespace morvane
