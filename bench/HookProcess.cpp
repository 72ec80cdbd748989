#include "HookProcess.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {

namespace fs = std::filesystem;

fs::path renderedHook(const fs::path &folder, int port, const std::string &token) {
    std::ifstream source(HOOK_TEMPLATE);
    std::string text{std::istreambuf_iterator<char>(source), {}};
    const auto fill = [&text](const std::string &mark, const std::string &value) {
        text.replace(text.find(mark), mark.size(), value);
    };
    fill("__PORT__", std::to_string(port));
    fill("__TOKEN__", token);
    fs::create_directories(folder);
    const fs::path hook = folder / "hook.sh";
    std::ofstream(hook) << text;
    fs::permissions(hook, fs::perms::owner_all);
    return hook;
}

double timeOfProcess(const std::vector<std::string> &arguments) {
    static const std::string usual = "{\"session_id\":\"" + std::string(2000, 'x') + "\"}";
    return timeOfProcess(arguments, usual);
}

double timeOfProcess(const std::vector<std::string> &arguments, const std::string &payload) {
    using Clock = std::chrono::steady_clock;
    std::vector<char *> pointers;
    for (const std::string &argument : arguments)
        pointers.push_back(const_cast<char *>(argument.c_str()));
    pointers.push_back(nullptr);
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
    if (posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environment.data()) !=
            0 ||
        waitpid(child, &status, 0) != child || status != 0)
        std::abort();
    const double time = std::chrono::duration<double, std::micro>(Clock::now() - start).count();
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    return time;
}

} // namespace morvane
