#include "Core/Intake/EventServer.h"
#include "EpollServer.h"
#include "InlineScheduler.h"
#include "Row.h"
#include "Support/HttpClient.h"

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

// What a request costs: the event server, which checks the token, decodes the event and hands it
// on, as a multiple of servers that do none of this. One connection a request, with a payload of
// 2 KB.

namespace {

using namespace morvane;

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

void ask(std::uint16_t port, const std::string &text) {
    if (httpExchange(port, text).find("200 OK") == std::string::npos) {
        std::abort();
    }
}

/// How long four clients take for their requests together.
double timeOfMany(std::uint16_t port, const std::string &text) {
    return secondsOf([&] {
        std::vector<std::thread> clients;
        for (int client = 0; client < 4; ++client) {
            clients.emplace_back([&] {
                for (int count = 0; count < 500; ++count) {
                    ask(port, text);
                }
            });
        }
        for (std::thread &client : clients) {
            client.join();
        }
    });
}

/// A server in a few lines of script. It prints its port, and ends on a request for "/quit", or
/// after two minutes in any case.
constexpr const char *nodeServer = R"(exec timeout 120 node -e '
    const server = require("http").createServer((request, response) => {
        request.resume().on("end", () => {
            response.setHeader("Connection", "close");
            response.end("200 OK");
            if (request.url === "/quit") server.close();
        });
    });
    server.listen(0, "127.0.0.1", () => console.log(server.address().port));
' 2>/dev/null)";

} // namespace

int main() {
    InlineScheduler main;
    EventServer server(QStringLiteral("TOKEN"), 0, {.onEvent = [](const HookEvent &) {}}, main);
    if (!server.start()) {
        return 1;
    }
    EpollServer bare;
    std::thread bareThread([&bare] { bare.run(); });
    const std::string text = request();
    const auto ours = [&] { return secondsOf([&] { ask(server.boundPort(), text); }); };
    compare({"a request", "a bare epoll server", 1.1}, {.turns = 300}, ours,
            [&] { return secondsOf([&] { ask(bare.port(), text); }); });
    compare(
        {"2,000 requests of four clients at once", "a bare epoll server", 1.2}, {},
        [&] { return timeOfMany(server.boundPort(), text); },
        [&] { return timeOfMany(bare.port(), text); });
    bare.stop();
    bareThread.join();

    std::FILE *node = popen(nodeServer, "r");
    std::uint16_t port = 0;
    if (std::fscanf(node, "%hu", &port) == 1) {
        compare({"a request", "node's http server", 1}, {.turns = 100}, ours,
                [&] { return secondsOf([&] { ask(port, text); }); });
        ask(port, httpPost("/quit", {{"Host", "127.0.0.1"}}, {}));
    }
    pclose(node);
}
