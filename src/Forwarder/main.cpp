#include "AgentProgram.h"
#include "Answer.h"
#include "Buffer.h"
#include "ControllingTerminal.h"
#include "Deadline.h"
#include "Environment.h"
#include "HeaderText.h"
#include "Kernel.h"
#include "Peer.h"
#include "Process.h"
#include "RepositoryHead.h"
#include "Terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <netinet/in.h>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

// forwarder PORT /event AGENT EVENT [decide]
// forwarder PORT /usage
//
// Posts standard input to 127.0.0.1:PORT. MORVANE_HEADERS holds the header lines that only the
// script knows, one to a line: in the environment, since the token among them must not be seen in a
// list of processes. Only a server of the same user gets them. An event is sent with where and by
// whom the hook was called, and with "decide" a complete answer of status 200 goes to standard
// output. For a status line the input itself goes there, and no answer is awaited; if the input
// names a folder, two lines come first: the folder, and its repository's HEAD. Whatever happens,
// the exit status is 0 and nothing else is printed: no failure here may disturb the agent.

namespace morvane {

namespace {

/// The agent gives up on a hook that waits for a person after 120 seconds, on any other after 5;
/// the server answers within 60.
constexpr long promptLimit = 3'000; // milliseconds, all of them
constexpr long decisionLimit = 90'000;

/// If Morvane is slow or stopped, the kernel keeps an event that has been sent. One of usual size
/// is complete when the server first reads it, so that no later event overtakes it. After a longer
/// one the client waits for an answer, up to `eventLimit`, so that it stays before the next.
constexpr size_t mostAtOnce = 32 << 10;
constexpr long eventLimit = 250;

/// A status line appears only when the client has ended, and each refresh cancels the one before.
constexpr long copyLimit = 1'000;

/// Bytes, and far more than the server takes: an agent gone wild must not fill the memory.
constexpr size_t longestPayload = 16 << 20;

enum class Mode {
    tell,   ///< no more than the beginning of an answer is awaited
    decide, ///< the answer is printed
    copy,   ///< a status line is printed, the answer is not read
};

/// False if the payload's end did not come in time or within the limit: half a payload is of no
/// use. A payload that is too long is still read, since a broken pipe may disturb the agent.
bool readPayload(Buffer &payload, const Deadline &deadline) {
    bool isTooLong = false;
    for (;;) {
        if (!payload.reserve() || !deadline.await(STDIN_FILENO, POLLIN))
            return false;
        const long size = kernel::call(SYS_read, STDIN_FILENO, payload.room(), payload.roomSize());
        if (size == -EAGAIN || size == -EINTR)
            continue;
        if (size <= 0)
            return !isTooLong;
        isTooLong = isTooLong || payload.view().size() + static_cast<size_t>(size) > longestPayload;
        payload.grow(isTooLong ? 0 : static_cast<size_t>(size));
    }
}

bool appendNumber(Buffer &text, size_t number) {
    const char digit = static_cast<char>('0' + number % 10);
    return (number < 10 || appendNumber(text, number / 10)) && text.append({&digit, 1});
}

bool appendLines(Buffer &head, std::string_view lines) {
    for (const char &c : lines) {
        if (!head.append(c == '\n' ? std::string_view{"\r\n"} : std::string_view{&c, 1}))
            return false;
    }
    return head.append("\r\n");
}

bool appendHeader(Buffer &head, std::string_view name, std::string_view value) {
    return value.empty() ||
           (head.append(name) && head.append(": ") && head.append(value) && head.append("\r\n"));
}

/// Appends an event's headers: what the script was called with, and what the client finds out.
bool appendEvent(Buffer &head, std::string_view name, std::string_view event, Mode mode,
                 const Environment &environment) {
    const Terminal terminal = terminalIn(environment);
    const Agent caller = agent(name, event);
    const bool isKnown = caller.process > 0;
    const ShortText process = isKnown ? identityOf(caller) : ShortText{};
    const std::pair<std::string_view, std::string_view> headers[] = {
        {"x-morvane-agent", name},
        {"x-hook-event", event},
        {"x-morvane-decision", mode == Mode::decide ? "1" : ""},
        {"x-term-program", terminal.program},
        {"x-host-bundle", terminal.host},
        {"x-iterm-session", terminal.iterm},
        {"x-tmux-server", terminal.tmuxServer},
        {"x-tmux-pane", terminal.tmuxPane},
        {"x-wezterm-pane", terminal.wezterm},
        {"x-morvane-wezterm-socket", terminal.weztermSocket},
        {"x-kitty-window", terminal.kitty},
        {"x-morvane-kitty-listen-on", terminal.kittyListenOn},
        {"x-zellij-session", terminal.zellij},
        {"x-orca-terminal", terminal.orca},
        {"x-tty", controllingTerminal()},
        {"x-morvane-program", isKnown ? programOf(caller) : std::string_view{}},
        {"x-morvane-process", {process.bytes, process.size}}};
    for (const auto &[header, value] : headers) {
        if (!appendHeader(head, header, value))
            return false;
    }
    return true;
}

/// The connected socket, or a value below zero.
int connectTo(std::uint16_t port, const Deadline &deadline) {
    const auto connection = static_cast<int>(
        kernel::call(SYS_socket, AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = __builtin_bswap16(port);
    address.sin_addr.s_addr = __builtin_bswap32(INADDR_LOOPBACK);
    long result = kernel::call(SYS_connect, connection, &address, sizeof address);
    if (result == -EINPROGRESS && deadline.await(connection, POLLOUT)) {
        // Tells the outcome: if nobody listens, the kernel need not be asked who does.
        result = kernel::call(SYS_connect, connection, &address, sizeof address);
    }
    return result == 0 || result == -EISCONN ? connection : -1;
}

/// Both parts in one call, so that a usual event arrives in one piece.
bool send(int connection, std::string_view head, std::string_view payload,
          const Deadline &deadline) {
    iovec parts[2] = {{const_cast<char *>(head.data()), head.size()},
                      {const_cast<char *>(payload.data()), payload.size()}};
    while (parts[0].iov_len + parts[1].iov_len > 0) {
        msghdr message{};
        message.msg_iov = parts;
        message.msg_iovlen = 2;
        const long result = kernel::call(SYS_sendmsg, connection, &message, MSG_NOSIGNAL);
        if (result == -EAGAIN && deadline.await(connection, POLLOUT))
            continue;
        if (result < 0)
            return false;
        auto sent = static_cast<size_t>(result);
        for (iovec &part : parts) {
            const size_t taken = sent < part.iov_len ? sent : part.iov_len;
            part.iov_base = static_cast<char *>(part.iov_base) + taken;
            part.iov_len -= taken;
            sent -= taken;
        }
    }
    return true;
}

/// Takes in one more piece of the answer; false at its end, on a failure or when time is up.
bool receive(int connection, Buffer &answer, const Deadline &deadline) {
    if (!answer.reserve() || !deadline.await(connection, POLLIN))
        return false;
    const long size = kernel::call(SYS_recvfrom, connection, answer.room(), answer.roomSize(), 0,
                                   nullptr, nullptr);
    if (size > 0)
        answer.grow(static_cast<size_t>(size));
    return size > 0;
}

void print(std::string_view text, const Deadline &deadline) {
    while (!text.empty() && deadline.await(STDOUT_FILENO, POLLOUT)) {
        const long size = kernel::call(SYS_write, STDOUT_FILENO, text.data(), text.size());
        if (size == -EAGAIN || size == -EINTR)
            continue;
        if (size <= 0)
            return;
        text.remove_prefix(static_cast<size_t>(size));
    }
}

/// Looks up HEAD for the shell, which could only read files to their end or start another process.
void printStatus(std::string_view status, const Deadline &deadline) {
    const std::string_view folder = folderIn(status);
    if (!folder.empty()) {
        const std::string_view lines[] = {folder, headAround(folder)};
        for (const std::string_view line : lines) {
            print(line, deadline);
            print("\n", deadline);
        }
    }
    print(status, deadline);
}

void ignoreBrokenPipes() {
    // The kernel's own layout: handler, flags, restorer, mask.
    const unsigned long action[4] = {1 /* SIG_IGN */, 0, 0, 0};
    kernel::call(SYS_rt_sigaction, SIGPIPE, action, nullptr, sizeof(unsigned long));
}

std::uint16_t portIn(const char *digits) {
    unsigned port = 0;
    for (; *digits >= '0' && *digits <= '9'; ++digits)
        port = 10 * port + static_cast<unsigned>(*digits - '0');
    return static_cast<std::uint16_t>(port);
}

/// Posts what stands on standard input, with the given headers and its length.
void post(std::uint16_t port, Buffer &head, Mode mode) {
    const Deadline prompt{mode == Mode::copy ? copyLimit : promptLimit};
    const Deadline end = mode == Mode::decide ? Deadline{decisionLimit} : prompt;
    static constinit Buffer payload;
    if (!readPayload(payload, prompt))
        return;
    if (mode == Mode::copy)
        printStatus(payload.view(), prompt);
    if (!head.append("Content-Length: ") || !appendNumber(head, payload.view().size()) ||
        !head.append("\r\n\r\n"))
        return;
    const int connection = connectTo(port, prompt);
    if (connection < 0 || !isPeerOurs(connection, port) ||
        !send(connection, head.view(), payload.view(), end) || mode == Mode::copy)
        return;
    if (mode == Mode::tell && head.view().size() + payload.view().size() <= mostAtOnce)
        return;
    static constinit Buffer answer;
    const Deadline heard = mode == Mode::tell ? Deadline{eventLimit} : end;
    while (receive(connection, answer, heard)) {
        if (mode == Mode::tell)
            return;
        const std::string_view body = completeBody(answer.view());
        if (body.empty())
            continue;
        // With standard output closed, the connection may have got its number.
        if (connection != STDOUT_FILENO)
            print(body, end);
        return;
    }
}

bool appendStart(Buffer &head, std::string_view path, std::string_view headers) {
    return head.append("POST ") && head.append(path) &&
           head.append(" HTTP/1.1\r\nHost: 127.0.0.1\r\n") && appendLines(head, headers);
}

} // namespace

} // namespace morvane

void run(int argumentCount, char **arguments, char **environment) {
    using namespace morvane;
    ignoreBrokenPipes();
    constexpr int leastArguments = 3; // with the client's own name
    if (argumentCount < leastArguments)
        return;
    const std::string_view path{arguments[2]};
    const Environment variables{environment};
    const auto argument = [&](int number) {
        return number < argumentCount ? cleaned(arguments[number]) : std::string_view{};
    };
    const Mode mode = path == "/usage"          ? Mode::copy
                      : argument(5) == "decide" ? Mode::decide
                                                : Mode::tell;
    static constinit Buffer head;
    if (appendStart(head, path, variables.raw("MORVANE_HEADERS")) &&
        (mode == Mode::copy || appendEvent(head, argument(3), argument(4), mode, variables)))
        post(portIn(arguments[1]), head, mode);
}
