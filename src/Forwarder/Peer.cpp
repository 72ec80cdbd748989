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

/// Whom the kernel names where a user has no number of its own, as in a container. Nobody can be
/// told from nobody.
constexpr std::uint32_t nobody = 65534;

enum class Owner { we, another, undecided, unknown };

Owner ownerOf(std::uint32_t user) {
    const auto we = static_cast<std::uint32_t>(kernel::call(SYS_geteuid));
    return user == we && user != nobody ? Owner::we : Owner::another;
}

std::uint16_t networkOrder(std::uint16_t number) {
    return __builtin_bswap16(number);
}

/// Asks for the socket that a packet from `from` to `port`, both at 127.0.0.1, would come to.
/// Undecided where no process has that socket yet: it has not been accepted.
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
    // The kernel has answered before it took the question as sent.
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
    // What has not been accepted ends with the socket that listens, and only its owner accepts it.
    constexpr std::uint16_t nowhere = 0;
    if (owner == Owner::undecided)
        owner = askForSocket(kernelSocket, port, nowhere);
    kernel::call(SYS_close, kernelSocket);
    return owner;
}

/// Its own port of a connection; 0 on a failure.
std::uint16_t portOf(int connection) {
    sockaddr_in address{};
    unsigned size = sizeof address;
    kernel::call(SYS_getsockname, connection, &address, &size);
    return networkOrder(address.sin_port);
}

/// The kernel's list of sockets, those that listen first; only its beginning where it is long.
bool readSockets(Buffer &list) {
    constexpr size_t limit = 1 << 20;
    const long file = kernel::call(SYS_openat, AT_FDCWD, "/proc/net/tcp", O_RDONLY | O_CLOEXEC);
    long size = file;
    while (size > 0 && list.view().size() < limit && list.reserve()) {
        size = kernel::call(SYS_read, file, list.room(), list.roomSize());
        list.grow(size > 0 ? static_cast<size_t>(size) : 0);
    }
    if (file >= 0)
        kernel::call(SYS_close, file);
    return size >= 0;
}

/// Whether it is our socket that listens on exactly this address. Serves where a sandbox or a
/// kernel without its modules refuses the question: Morvane shares its port with nobody, so
/// whoever listens while the connection stands has it.
bool isListenerOurs(std::uint16_t port) {
    char place[] = " 0100007F:0000 00000000:0000 0A ";
    constexpr size_t digitsEnd = 14;
    for (size_t i = 1; i <= 4; ++i, port = static_cast<std::uint16_t>(port >> 4U))
        place[digitsEnd - i] = "0123456789ABCDEF"[port & 0xfU];
    static constinit Buffer list;
    if (!readSockets(list))
        return false;
    const size_t found = list.view().find(place);
    if (found == std::string_view::npos)
        return false;

    // Behind it: both queues, timer, retransmissions, the user.
    std::string_view rest = list.view();
    rest.remove_prefix(found + sizeof place - 1);
    constexpr int fieldsBeforeUser = 3;
    for (int field = 0; field < fieldsBeforeUser; ++field) {
        const size_t blank = rest.find(' ');
        if (blank == std::string_view::npos)
            return false;
        rest.remove_prefix(blank + 1);
    }
    while (!rest.empty() && rest.front() == ' ')
        rest.remove_prefix(1);
    std::uint32_t user = 0;
    for (; !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; rest.remove_prefix(1))
        user = 10 * user + static_cast<std::uint32_t>(rest.front() - '0');
    return ownerOf(user) == Owner::we;
}

} // namespace

bool isPeerOurs(int connection, std::uint16_t port) {
    const Owner owner = askKernel(port, portOf(connection));
    return owner == Owner::we || (owner == Owner::unknown && isListenerOurs(port));
}

} // namespace morvane
