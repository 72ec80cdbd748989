#include "Core/Intake/EventServer.h"
#include "EpollServer.h"
#include "Support/HttpClient.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

// What a request costs: the event server, which checks the token, decodes the event and hands it
// on, as a multiple of a bare epoll loop that does none of this. One connection a request, with a
// payload of 2 KB; the two take turns, so that a busy moment meets both.

namespace {

using namespace morvane;
using Clock = std::chrono::steady_clock;

/// Takes what the server hands to the main thread, as quickly as a main thread could.
class NoMainLoop : public Scheduler {
public:
    Date now() const override { return std::chrono::system_clock::now(); }
    Task after(Seconds, std::function<void()>) override { return {}; }
    void post(std::function<void()> action) override { action(); }
};

std::string request() {
    const std::string body =
        R"({"session_id":"6b3f","cwd":"/home/ada/project","tool_name":"Bash","tool_input":)"
        R"({"command":"make -j2 all","description":"Build"},"pad":")" +
        std::string(1900, 'x') + R"("})";
    return httpPost("/event",
                    {{"Host", "127.0.0.1"},
                     {"x-morvane-token", "TOKEN"},
                     {"x-morvane-agent", "claude"},
                     {"x-hook-event", "PreToolUse"},
                     {"x-term-program", "kitty"},
                     {"x-tty", "/dev/pts/3"}},
                    body);
}

void exchange(std::uint16_t port, const std::string &text) {
    if (httpExchange(port, text).find("200 OK") == std::string::npos) {
        std::abort();
    }
}

double timeOf(std::uint16_t port, const std::string &text) {
    const auto start = Clock::now();
    exchange(port, text);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// How long four clients take for their requests together.
double timeOfMany(std::uint16_t port, const std::string &text) {
    const auto start = Clock::now();
    std::vector<std::thread> clients;
    for (int client = 0; client < 4; ++client) {
        clients.emplace_back([&] {
            for (int count = 0; count < 500; ++count) {
                exchange(port, text);
            }
        });
    }
    for (std::thread &client : clients) {
        client.join();
    }
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The median of one measurement's times at the first port over that at the second.
template <typename Measure>
double ratio(int rounds, std::array<std::uint16_t, 2> ports, Measure measure) {
    std::array<std::vector<double>, 2> times;
    for (int round = -rounds / 10; round < rounds; ++round) {
        for (std::size_t side = 0; side < ports.size(); ++side) {
            const double time = measure(ports[side]);
            if (round >= 0) {
                times[side].push_back(time);
            }
        }
    }
    return median(times[0]) / median(times[1]);
}

} // namespace

int main() {
    NoMainLoop main;
    EventServer server(QStringLiteral("TOKEN"), 0, {.onEvent = [](const HookEvent &) {}}, main);
    if (server.start()) {
        return 1;
    }
    EpollServer bare;
    std::thread bareThread([&bare] { bare.run(); });
    const std::array ports{server.boundPort(), bare.port()};
    const std::string text = request();
    const double time = ratio(4000, ports, [&](std::uint16_t port) { return timeOf(port, text); });
    const double together =
        ratio(15, ports, [&](std::uint16_t port) { return timeOfMany(port, text); });
    std::printf("a request / a bare epoll server's, median time: %.2f\n", time);
    std::printf("requests per second / a bare epoll server's: %.2f\n", 1 / together);
    bare.stop();
    bareThread.join();
}
