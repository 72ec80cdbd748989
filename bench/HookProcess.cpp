#include "HookProcess.h"

#include "Row.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvane {

namespace fs = std::filesystem;

fs::path rendered(Script script, const fs::path &folder, int port, const std::string &token) {
    const std::string name = script == Script::hook ? "hook.sh" : "statusline.sh";
    std::ifstream source(fs::path(TEMPLATES) / (name + ".template"));
    std::string text{std::istreambuf_iterator<char>(source), {}};
    const auto fill = [&text](const std::string &mark, const std::string &value) {
        text.replace(text.find(mark), mark.size(), value);
    };
    fill("__PORT__", std::to_string(port));
    fill("__TOKEN__", token);
    fs::create_directories(folder);
    const fs::path file = folder / name;
    std::ofstream(file) << text;
    fs::permissions(file, fs::perms::owner_all);
    return file;
}

std::string usualInput(Script script) {
    if (script == Script::hook) {
        return R"({"session_id":")" + std::string(2000, 'x') + R"("})";
    }
    return R"({"session_id":"b7faad07-53a1","transcript_path":"/h/.claude/projects/-h-w/b7.jsonl",)"
           R"("cwd":"/h/webshop","model":{"id":"claude-opus-4-1","display_name":"Opus 4.1"},)"
           R"("workspace":{"current_dir":"/h/webshop","project_dir":"/h","added_dirs":["/x"]},)"
           R"("version":"2.1.90","output_style":{"name":"default"},"cost":{"total_cost_usd":0.1,)"
           R"("total_duration_ms":45000,"total_lines_added":156},"context_window":{)"
           R"("context_window_size":200000,"used_percentage":8,"current_usage":{)"
           R"("input_tokens":8500,"output_tokens":1200}},"thinking":{"enabled":true},)"
           R"("rate_limits":{"five_hour":{"used_percentage":41.5,"resets_at":1738425600},)"
           R"("seven_day":{"used_percentage":13.2,"resets_at":1738857600}}})";
}

double timeOfProcess(const std::vector<std::string> &arguments, const std::string &input) {
    std::vector<char *> pointers;
    for (const std::string &argument : arguments)
        pointers.push_back(const_cast<char *>(argument.c_str()));
    pointers.push_back(nullptr);
    std::array<std::string, 3> variables{"PATH=/usr/bin:/bin", "TERM=xterm-256color",
                                         "TERM_PROGRAM=vscode"};
    std::array<char *, 4> environment{variables[0].data(), variables[1].data(), variables[2].data(),
                                      nullptr};

    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0 ||
        write(pipe[1], input.data(), input.size()) != static_cast<ssize_t>(input.size()))
        std::abort();
    close(pipe[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[0], STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    const double time = secondsOf([&] {
        pid_t child = 0;
        int status = 0;
        if (posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(),
                        environment.data()) != 0 ||
            waitpid(child, &status, 0) != child || status != 0)
            std::abort();
    });
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[0]);
    return time;
}

} // namespace morvane
