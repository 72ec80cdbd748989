#include "HookProcess.h"

#include "Core/Hooks/ForwarderScripts.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace morvane::tests {

namespace {

namespace fs = std::filesystem;

std::vector<char *> pointersTo(std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t size = 0; (size = read(descriptor, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), static_cast<size_t>(size));
    close(descriptor);
    return text;
}

void writeAll(int descriptor, const std::string &text) {
    for (size_t done = 0; done < text.size();) {
        const ssize_t size = send(descriptor, text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (size <= 0)
            break;
        done += static_cast<size_t>(size);
    }
    close(descriptor);
}

} // namespace

HookProcess::HookProcess(Carrier carrier, std::uint16_t port, std::vector<std::string> shell,
                         std::string name)
    : m_name(std::move(name)), m_shell(std::move(shell)) {
    if (carrier == Carrier::Client)
        fs::copy_file(FORWARDER, client()); // first: the script trusts no newer client
    const ForwarderScripts scripts(QString::fromStdString(token()), port);
    const auto text = scripts.renderTemplate(QString::fromStdString(m_name));
    std::ofstream(script()) << text->toStdString();
    setEnvironment({});
}

std::string HookProcess::token() {
    const std::string ownPart = std::to_string(getpid());
    return std::string(35, 'A') + "-" + std::string(36 - ownPart.size(), '7') + ownPart;
}

std::vector<std::vector<std::string>> HookProcess::shells() {
    std::vector<std::vector<std::string>> found{
        {"/bin/sh"}, {"/usr/bin/bash", "--posix"}, {"/usr/bin/busybox", "sh"}};
    std::erase_if(found, [](const auto &shell) { return !fs::exists(shell.front()); });
    return found;
}

bool HookProcess::standsInSomeArguments(const std::string &text) {
    return std::ranges::any_of(fs::directory_iterator("/proc"), [&](const auto &process) {
        // The process may end meanwhile; this way of reading makes that an empty text.
        std::ostringstream arguments;
        arguments << std::ifstream(process.path() / "cmdline").rdbuf();
        return arguments.str().find(text) != std::string::npos;
    });
}

void HookProcess::setEnvironment(const std::vector<std::string> &variables) {
    // A later variable of the same name replaces an earlier one.
    m_environment = {"PATH=/usr/bin:/bin"};
    m_environment.insert(m_environment.end(), variables.begin(), variables.end());
}

std::string HookProcess::run(const std::vector<std::string> &arguments,
                             const std::string &payload) {
    // The agents' runtime gives its children a socket, not a pipe.
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, input.data()) != 0 ||
        pipe2(output.data(), O_CLOEXEC) != 0)
        std::abort();
    const pid_t child = spawn(arguments, input[0], output[1]);
    close(input[0]);
    close(output[1]);
    std::thread writer([&] { writeAll(input[1], payload); });
    std::string written = readAll(output[0]);
    writer.join();
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return written;
}

pid_t HookProcess::start(const std::vector<std::string> &arguments) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t child = spawn(arguments, nothing, nothing);
    close(nothing);
    return child;
}

pid_t HookProcess::spawn(const std::vector<std::string> &arguments, int input, int output) {
    std::vector<std::string> command = m_shell;
    command.push_back(script().string());
    command.insert(command.end(), arguments.begin(), arguments.end());
    const auto words = pointersTo(command);
    const auto variables = pointersTo(m_environment);
    const pid_t child = fork();
    if (child == 0) {
        dup2(input, STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        execve(words[0], words.data(), variables.data());
        _exit(1);
    }
    return child;
}

} // namespace morvane::tests
