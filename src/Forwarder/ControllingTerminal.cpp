#include "ControllingTerminal.h"

#include "Kernel.h"
#include "Process.h"

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
