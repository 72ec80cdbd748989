#include "Core/Intake/EventServer.h"
#include "EpollServer.h"
#include "HookProcess.h"
#include "InlineScheduler.h"
#include "Loopback.h"
#include "Memory.h"
#include "Row.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>
#include <vector>

// What strangers without the token may cost: how long real hooks take meanwhile, as a multiple of
// what they take in the calm before, and the memory that such requests take while they are held
// open. The strangers run in a process of their own, whose work slows hooks down as well: by how
// much shows while they do the same to a server that never reads.

namespace {

using namespace morvane;
namespace fs = std::filesystem;

constexpr int rounds = 15;
constexpr int hooksPerRound = 40;

struct Attack {
    const char *name;
    std::size_t connections;
    std::string bytes;       ///< what each sends; never a complete request
    std::size_t trickle = 0; ///< bytes that each sends after them, one by one
};

std::vector<Attack> attacks() {
    const std::string start = "POST /event HTTP/1.1\r\n";
    const std::string end = "Content-Length: 20000\r\n\r\n";
    std::string lines = start;
    for (int count = 0; count < 240'000; ++count) {
        lines += "a:\r\n";
    }
    std::string known = start;
    while (known.size() < 960'000) {
        known += "x-tty: /dev/pts/1\r\nx-morvane-token: guess\r\n";
    }
    return {{"400 heads of 240,000 lines", 400, lines + end, 8},
            {"400 heads of headers that count", 400, known + end, 8},
            {"512 heads of long lines", 512,
             start + "x-tty: " + std::string(2000, 't') +
                 "\r\nx-tmux-pane: " + std::string(980'000, 'p')},
            {"512 megabyte bodies without an end", 512,
             start + "Content-Length: 1048576\r\n\r\n" + std::string(990'000, 'b')}};
}

/// Opens all connections at once, and sends on each as fast as the server takes it, until it has
/// taken nothing for a tenth of a second. Connections that the server closes are given up.
std::vector<int> run(const Attack &attack, std::uint16_t port) {
    std::vector<int> descriptors;
    std::vector<pollfd> waiting;
    for (std::size_t count = 0; count < attack.connections; ++count) {
        descriptors.push_back(connectToLoopback(port));
        waiting.push_back({descriptors.back(), POLLOUT, 0});
    }
    std::vector<std::size_t> sent(attack.connections);
    for (std::size_t open = attack.connections; open > 0;) {
        if (poll(waiting.data(), waiting.size(), 100) == 0) {
            break;
        }
        for (std::size_t each = 0; each < waiting.size(); ++each) {
            if (waiting[each].revents == 0) {
                continue;
            }
            const ssize_t count = send(waiting[each].fd, attack.bytes.data() + sent[each],
                                       attack.bytes.size() - sent[each], MSG_NOSIGNAL);
            sent[each] += count > 0 ? static_cast<std::size_t>(count) : 0;
            if (sent[each] == attack.bytes.size() || (count < 0 && errno != EAGAIN)) {
                waiting[each].fd = -1;
                --open;
            }
        }
    }
    for (std::size_t count = 0; count < attack.trickle; ++count) {
        usleep(5'000);
        for (const int descriptor : descriptors) {
            std::ignore = send(descriptor, "b", 1, MSG_NOSIGNAL);
        }
    }
    return descriptors;
}

/// An attack, or with port 0 the end of one.
struct Order {
    std::size_t attack = 0;
    std::uint16_t port = 0;
};

[[noreturn]] void attackWhenTold(int orders, int reports) {
    const std::vector<Attack> all = attacks();
    std::vector<int> held;
    for (Order order; read(orders, &order, sizeof order) == sizeof order;) {
        std::ranges::for_each(held, close);
        held.clear();
        if (order.port != 0) {
            held = run(all[order.attack], order.port);
        }
        std::ignore = write(reports, "", 1);
    }
    std::_Exit(0);
}

class Strangers {
public:
    Strangers() {
        if (pipe(m_orders) != 0 || pipe(m_reports) != 0) {
            std::exit(1);
        }
        m_process = fork();
        if (m_process == 0) {
            close(m_orders[1]);
            attackWhenTold(m_orders[0], m_reports[1]);
        }
    }
    ~Strangers() {
        close(m_orders[1]);
        waitpid(m_process, nullptr, 0);
    }
    void order(Order what) { std::ignore = write(m_orders[1], &what, sizeof what); }
    void awaitReport() {
        char what = 0;
        std::ignore = read(m_reports[0], &what, 1);
    }

private:
    int m_orders[2];
    int m_reports[2];
    pid_t m_process = 0;
};

/// The server, in a process of its own as well: hooks started from the server's process would
/// inherit its connections and have to close them, which an agent's hooks don't.
class ServerProcess {
public:
    explicit ServerProcess(const std::string &token) {
        int reports[2];
        if (pipe(reports) != 0) {
            std::exit(1);
        }
        m_process = fork();
        if (m_process == 0) {
            serve(token, reports[1]);
        }
        close(reports[1]);
        if (read(reports[0], &m_port, sizeof m_port) != sizeof m_port) {
            std::exit(1);
        }
        close(reports[0]);
    }
    ~ServerProcess() {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
    std::uint16_t port() const { return m_port; }
    std::string process() const { return std::to_string(m_process); }

private:
    [[noreturn]] static void serve(const std::string &token, int reports) {
        InlineScheduler main;
        EventServer server(QString::fromStdString(token), 0, {.onEvent = [](const HookEvent &) {}},
                           main);
        if (!server.start()) {
            std::_Exit(1);
        }
        const std::uint16_t port = server.boundPort();
        std::ignore = write(reports, &port, sizeof port);
        for (;;) {
            pause();
        }
    }

    pid_t m_process = 0;
    std::uint16_t m_port = 0;
};

class Measurement {
public:
    Measurement(Strangers &strangers, const ServerProcess &server,
                std::function<double()> timeOfHook)
        : m_strangers(strangers), m_server(server), m_timeOfHook(std::move(timeOfHook)) {}

    /// Prints, for each round, the 95th percentile of hooks during this attack on the server, and
    /// during the same attack on a server that never reads, each divided by that of the calm
    /// before.
    void delays(std::size_t attack, const std::string &name) {
        const double before = memory("VmRSS", m_server.process());
        std::vector<double> attacked;
        std::vector<double> unread;
        for (int round = 0; round < rounds; ++round) {
            const EpollServer nobody; // listens, and never runs
            unread.push_back(delay({attack, nobody.port()}));
            forgetPeak(m_server.process());
            attacked.push_back(delay({attack, m_server.port()}));
            m_peaks.push_back((memory("VmHWM", m_server.process()) - before) / 32'768);
        }
        const std::string what = "95th percentile of `hook.sh` during " + name;
        print({what.c_str(), "the same in the calm before", 2}, attacked);
        print({(what + " that nobody takes").c_str(), "the same in the calm before"}, unread);
    }

    /// The peak memory of each round of all attacks, as a fraction of 32 MB.
    const std::vector<double> &peaks() const { return m_peaks; }

private:
    double delay(Order order) {
        const double calm = p95();
        m_strangers.order(order);
        const double result = p95() / calm;
        m_strangers.awaitReport();
        m_timeOfHook();
        m_strangers.order({});
        m_strangers.awaitReport();
        m_timeOfHook();
        return result;
    }
    double p95() const {
        std::vector<double> times(hooksPerRound);
        std::ranges::generate(times, m_timeOfHook);
        return quantile(times, 0.95);
    }

    Strangers &m_strangers;
    const ServerProcess &m_server;
    std::function<double()> m_timeOfHook;
    std::vector<double> m_peaks;
};

} // namespace

int main() {
    Strangers strangers;
    const std::string token(72, 'A');
    const ServerProcess server(token);
    std::string pattern = (fs::temp_directory_path() / "strangers-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    // The client comes first: a script trusts no client that is newer than itself.
    fs::copy_file(FORWARDER, folder / CLIENT_NAME);
    const fs::path script = rendered(Script::hook, folder, server.port(), token);
    Measurement measurement(strangers, server, [&, input = usualInput(Script::hook)] {
        return timeOfProcess({script, "claude", "PreToolUse"}, input);
    });
    const std::vector<Attack> all = attacks();
    for (std::size_t attack = 0; attack < all.size(); ++attack) {
        measurement.delays(attack, all[attack].name);
    }
    print({"memory that these attacks take at their peak", "32 MB", 1}, measurement.peaks());
    fs::remove_all(folder);
}
