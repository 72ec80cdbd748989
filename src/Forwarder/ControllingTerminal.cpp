#include "ControllingTerminal.h"

#include "Kernel.h"
#include "Process.h"

#include <fcntl.h>
#include <sys/ioctl.h>

namespace morvane {

namespace {

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

/// The device number of this process's own terminal, 0 without one. Opening the terminal avoids
/// /proc, which costs several times as much in a process that has only just begun.
long ownTerminal() {
    unsigned device = 0;
    const long terminal = kernel::call(SYS_openat, AT_FDCWD, "/dev/tty",
                                       O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (terminal >= 0) {
        kernel::call(SYS_ioctl, terminal, TIOCGDEV, &device);
        kernel::call(SYS_close, terminal);
    }
    return device;
}

} // namespace

std::string_view controllingTerminal() {
    Process process;
    process.id = ownNumber();
    process.parent = kernel::call(SYS_getppid);
    process.session = kernel::call(SYS_getsid, 0);
    process.terminal = ownTerminal();
    while (process.terminal == 0 && process.parent > 1) {
        // A session has one terminal or none, so the next to ask is the process that started its
        // leader or, if the leader is gone, the parent.
        const Process leader = process.session == process.id ? process : processOf(process.session);
        if (leader.terminal != 0)
            return deviceOf(leader.terminal);
        process = processOf(leader.parent > 1 ? leader.parent : process.parent);
    }
    return deviceOf(process.terminal);
}

} // namespace morvane
