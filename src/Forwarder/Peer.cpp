#include "Peer.h"

#include "Buffer.h"
#include "Kernel.h"

#include <cstddef>
#include <fcntl.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <string_view>
#include <sys/socket.h>

namespace morvane {

namespace {

/// The id that the kernel reports for users without one of their own, as in a container. It doesn't
/// tell one of them from another.
constexpr std::uint32_t nobody = 65534;

enum class Owner { we, another, undecided, unknown };

Owner ownerOf(std::uint32_t user) {
    const auto we = static_cast<std::uint32_t>(kernel::call(SYS_geteuid));
    return user == we && user != nobody ? Owner::we : Owner::another;
}

std::uint16_t networkOrder(std::uint16_t number) {
    return __builtin_bswap16(number);
}

/// Asks for the owner of the socket that a packet from `from` to `port`, both at 127.0.0.1, would
/// come to. Undecided while no process has that socket: it has not been accepted yet.
Owner askForSocket(long kernelSocket, std::uint16_t port, std::uint16_t from) {
    const std::uint32_t loopback = __builtin_bswap32(INADDR_LOOPBACK);
    struct {
        nlmsghdr header;
        inet_diag_req_v2 question;
    } request{};
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.question.sdiag_family = AF_INET;
    request.question.sdiag_protocol = IPPROTO_TCP;
    request.question.idiag_states = ~0U;
    request.question.id.idiag_sport = networkOrder(port);
    request.question.id.idiag_src[0] = loopback;
    request.question.id.idiag_dport = networkOrder(from);
    request.question.id.idiag_dst[0] = loopback;
    request.question.id.idiag_cookie[0] = INET_DIAG_NOCOOKIE;
    request.question.id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    if (kernel::call(SYS_sendto, kernelSocket, &request, sizeof request, 0, nullptr, 0) < 0)
        return Owner::unknown;

    struct {
        nlmsghdr header;
        inet_diag_msg answer;
        char attributes[512];
    } reply;
    // The kernel queues its answer before the call that sends the question returns.
    const long size =
        kernel::call(SYS_recvfrom, kernelSocket, &reply, sizeof reply, MSG_DONTWAIT, nullptr, 0);
    if (size < static_cast<long>(offsetof(decltype(reply), attributes)) ||
        reply.header.nlmsg_type != SOCK_DIAG_BY_FAMILY)
        return Owner::unknown;
    return reply.answer.idiag_inode == 0 ? Owner::undecided : ownerOf(reply.answer.idiag_uid);
}

Owner askKernel(std::uint16_t port, std::uint16_t from) {
    const long kernelSocket =
        kernel::call(SYS_socket, AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (kernelSocket < 0)
        return Owner::unknown;
    Owner owner = askForSocket(kernelSocket, port, from);
    // An unaccepted connection ends with the listening socket, whose owner alone can accept it.
    constexpr std::uint16_t nowhere = 0;
    if (owner == Owner::undecided)
        owner = askForSocket(kernelSocket, port, nowhere);
    kernel::call(SYS_close, kernelSocket);
    return owner;
}

/// The local port of a connection; 0 on a failure.
std::uint16_t portOf(int connection) {
    sockaddr_in address{};
    unsigned size = sizeof address;
    kernel::call(SYS_getsockname, connection, &address, &size);
    return networkOrder(address.sin_port);
}

/// Reads the kernel's list of sockets, listening ones first; false unless all of it was read.
bool readSockets(Buffer &list) {
    constexpr size_t limit = 16 << 20;
    const long file = kernel::call(SYS_openat, AT_FDCWD, "/proc/net/tcp", O_RDONLY | O_CLOEXEC);
    long size = file;
    while (size > 0 && list.view().size() < limit && list.reserve()) {
        size = kernel::call(SYS_read, file, list.room(), list.roomSize());
        list.grow(size > 0 ? static_cast<size_t>(size) : 0);
    }
    if (file >= 0)
        kernel::call(SYS_close, file);
    return size == 0;
}

void writePort(char *digitsEnd, std::uint16_t port) {
    for (int i = 1; i <= 4; ++i, port = static_cast<std::uint16_t>(port >> 4U))
        digitsEnd[-i] = "0123456789ABCDEF"[port & 0xfU];
}

/// Takes a field off the front, and the blanks before it.
std::string_view takeField(std::string_view &text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    const size_t end = text.find(' ');
    const std::string_view field{text.data(), end == std::string_view::npos ? text.size() : end};
    text.remove_prefix(field.size());
    return field;
}

/// The owner of the first socket in the list with these two ends.
Owner findSocket(std::string_view list, std::string_view ends) {
    const size_t found = list.find(ends);
    if (found == std::string_view::npos)
        return Owner::unknown;
    list.remove_prefix(found + ends.size());
    for ([[maybe_unused]] const char *passed : {"state", "queues", "timer", "retransmissions"})
        takeField(list);
    std::uint32_t user = 0;
    for (const char digit : takeField(list))
        user = 10 * user + static_cast<std::uint32_t>(digit - '0');
    takeField(list); // a timeout
    const std::string_view inode = takeField(list);
    return inode == "0" ? Owner::undecided : ownerOf(user);
}

/// Like `askKernel`, but from the kernel's list, if a sandbox or a kernel without its modules
/// refuses the question. The listener alone doesn't tell whose the connection is: a stranger keeps
/// what he accepted before he let go of the port.
Owner lookForSocket(std::uint16_t port, std::uint16_t from) {
    char connected[] = " 0100007F:0000 0100007F:0000 ";
    char listening[] = " 0100007F:0000 00000000:0000 ";
    constexpr size_t portEnd = 14;
    constexpr size_t otherPortEnd = 28;
    writePort(connected + portEnd, port);
    writePort(connected + otherPortEnd, from);
    writePort(listening + portEnd, port);
    static constinit Buffer list;
    if (!readSockets(list))
        return Owner::unknown;
    const Owner owner = findSocket(list.view(), connected);
    return owner == Owner::undecided ? findSocket(list.view(), listening) : owner;
}

} // namespace

bool isPeerOurs(int connection, std::uint16_t port) {
    const std::uint16_t from = portOf(connection);
    Owner owner = askKernel(port, from);
    if (owner == Owner::unknown)
        owner = lookForSocket(port, from);
    return owner == Owner::we;
}

} // namespace morvane
