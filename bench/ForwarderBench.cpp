#include "EpollServer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

// What a hook costs the agent: the forwarder's time as a multiple of an empty shell's, with the
// client and with curl. The runs take turns, so that a busy moment meets all alike.

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

struct Contender {
    std::string name;
    std::vector<std::string> arguments;
    std::vector<double> times;
};

fs::path renderedHook(const fs::path &folder, int port) {
    std::ifstream source(HOOK_TEMPLATE);
    std::string text{std::istreambuf_iterator<char>(source), {}};
    const auto fill = [&text](const std::string &mark, const std::string &value) {
        text.replace(text.find(mark), mark.size(), value);
    };
    fill("__PORT__", std::to_string(port));
    fill("__TOKEN__", std::string(72, 'A'));
    fs::create_directories(folder);
    const fs::path hook = folder / "hook.sh";
    std::ofstream(hook) << text;
    fs::permissions(hook, fs::perms::owner_all);
    return hook;
}

/// Microseconds from the start of the process to its end, with a usual payload on its input.
double timeOf(const Contender &contender) {
    static const std::string payload = "{\"session_id\":\"" + std::string(2000, 'x') + "\"}";
    std::vector<char *> arguments;
    for (const std::string &argument : contender.arguments)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    std::array<std::string, 3> variables{"PATH=/usr/bin:/bin", "TERM=xterm-256color",
                                         "TERM_PROGRAM=vscode"};
    std::array<char *, 4> environment{variables[0].data(), variables[1].data(), variables[2].data(),
                                      nullptr};

    std::array<int, 2> input{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 ||
        write(input[1], payload.data(), payload.size()) != static_cast<ssize_t>(payload.size()))
        std::abort();
    close(input[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);

    const auto start = Clock::now();
    pid_t child = 0;
    int status = 0;
    if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(),
                    environment.data()) != 0 ||
        waitpid(child, &status, 0) != child || status != 0)
        std::abort();
    const double time = Microseconds(Clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    return time;
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    constexpr int warmUps = 30;
    constexpr int runs = 300;

    std::string pattern = (fs::temp_directory_path() / "forwarder-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    morvane::EpollServer server;
    std::thread thread([&server] { server.run(); });

    // The client first: a script trusts none that is newer.
    fs::create_directories(folder / "client");
    fs::copy_file(FORWARDER, folder / "client" / "forwarder");
    const fs::path withClient = renderedHook(folder / "client", server.port());
    const fs::path withCurl = renderedHook(folder / "curl", server.port());
    std::array<Contender, 3> contenders{
        Contender{"an empty shell", {"/bin/sh", "-c", ":"}, {}},
        Contender{"hook.sh", {withClient, "claude", "PreToolUse"}, {}},
        Contender{"hook.sh with curl", {withCurl, "claude", "PreToolUse"}, {}}};
    for (int i = -warmUps; i < runs; ++i) {
        for (Contender &contender : contenders) {
            const double time = timeOf(contender);
            if (i >= 0)
                contender.times.push_back(time);
        }
    }

    server.stop();
    thread.join();
    fs::remove_all(folder);
    for (size_t i = 1; i < contenders.size(); ++i)
        std::printf("%s / %s: %.2f\n", contenders[i].name.c_str(), contenders[0].name.c_str(),
                    median(contenders[i].times) / median(contenders[0].times));
}
