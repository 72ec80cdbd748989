#include "CapturingListener.h"
#include "HookProcess.h"
#include "TerminalCases.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <pty.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace morvane::tests {

namespace {

/// The cases of all senders, and those that only the hook handles.
std::vector<TerminalCase> hookCases() {
    std::vector<TerminalCase> cases = terminalCases();
    const TerminalCase own[] = {
        {"tmux inside iTerm2",
         {"TERM_PROGRAM=tmux", "TERM=tmux-256color", "ITERM_SESSION_ID=w0:AB", "TMUX=/t/d,7,0"},
         {"x-host-bundle: com.googlecode.iterm2", "x-iterm-session: w0:AB",
          "x-term-program: iTerm.app", "x-tmux-server: /t/d,7,0"}},
        {"a JetBrains IDE by its entry",
         {"TERMINAL_EMULATOR=JetBrains-JediTerm",
          "GIO_LAUNCHED_DESKTOP_FILE=/a/my-intelliJ-ce-Idea.desktop"},
         {"x-host-bundle: com.jetbrains.intellij", "x-term-program: JetBrains-JediTerm"}},
        {"bytes that are no UTF-8",
         {"WEZTERM_PANE=4", "WEZTERM_UNIX_SOCKET=/run/gr\xc3\xb6\xff\xc3",
          "ZELLIJ_SESSION_NAME=gr\xc3\xb6\xff\xed\xa0\x80\xf0\x9f\x98\x80\xc0\x80\xc3"},
         {"x-host-bundle: com.github.wez.wezterm", "x-morvane-wezterm-socket: /run/grö",
          "x-term-program: WezTerm", "x-wezterm-pane: 4", "x-zellij-session: grö😀"}}};
    cases.insert(cases.end(), std::begin(own), std::end(own));
    return cases;
}

TEST(Terminal, IsToldFromTheEnvironmentInEveryShell) {
    CapturingListener listener(response("200 OK", ""));
    const std::vector<TerminalCase> cases = hookCases();
    for (const auto &shell : HookProcess::shells()) {
        for (const Carrier carrier : carriers) {
            SCOPED_TRACE(shell.front() + " " + testing::PrintToString(carrier));
            HookProcess hook(carrier, listener.port(), shell);
            for (const auto &[name, environment, headers] : cases) {
                SCOPED_TRACE(name);
                hook.setEnvironment(environment);
                EXPECT_EQ(hook.run({"claude", "Stop\r\nx-evil: 1"}), "");
                CapturedRequest request = listener.take();
                EXPECT_EQ(request.requestLine, "POST /event HTTP/1.1");
                EXPECT_EQ(request.headers["x-morvane-token"], HookProcess::token());
                EXPECT_EQ(request.headers["x-morvane-agent"], "claude");
                EXPECT_EQ(request.headers["x-hook-event"], "Stopx-evil: 1");
                EXPECT_EQ(request.host(), headers);
            }
        }
    }
}

TEST(Terminal, HasTheSameNamesWithoutTheClient) {
    CapturingListener listener(response("200 OK", ""));
    HookProcess hook(Carrier::Curl, listener.port());
    for (const auto &[variable, header, value] : nameCases()) {
        hook.setEnvironment({variable});
        EXPECT_EQ(hook.run({"claude", "Stop"}), "");
        EXPECT_EQ(listener.take().headers[header], value) << variable;
    }
}

// Agents run their hooks in a session without a terminal, and a program's name may look like the
// fields that follow it in /proc.
TEST(Terminal, IsThatOfAnAncestorOutsideTheHooksSession) {
    for (const Carrier carrier : carriers) {
        CapturingListener listener(response("200 OK", ""));
        const HookProcess hook(carrier, listener.port());
        const std::string agent = hook.folder() / "x) S 1 (y";
        std::filesystem::copy_file("/bin/sh", agent);
        const std::string command =
            "setsid /bin/sh '" + hook.script().string() + "' claude Stop </dev/null; :";

        int terminal = -1;
        std::array<char, 64> device{};
        const pid_t child = forkpty(&terminal, device.data(), nullptr, nullptr);
        if (child == 0) {
            execl(agent.c_str(), agent.c_str(), "-c", command.c_str(), nullptr);
            _exit(1);
        }
        EXPECT_EQ(listener.take().headers["x-tty"], device.data());
        waitpid(child, nullptr, 0);
        close(terminal);
    }
}

// A shell, a program that runs a given command, or a runtime that is given its program as text may
// stand between the agent and the hook. The script that an agent's runtime was started with is the
// agent, even if the arguments mention the hook or an update has replaced the executable.
TEST(Program, IsThatOfTheAncestorThatIsNoShellOfTheHook) {
    namespace fs = std::filesystem;
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"claude", "cli.js", "claude"},  {"größer (a) b", "cli.js", "größer (a) b"},
        {"node", "cli.js", "cli.js"},    {"node", "errand.js", "errand.js"},
        {"claude", "gone.js", "claude"}, {"node", "gone.js", "gone.js"},
        {"x\nx-evil: 1", "cli.js", ""},  {"gr\xc3", "cli.js", ""}};
    const fs::path before = fs::current_path();
    for (const Carrier carrier : carriers) {
        CapturingListener listener(response("200 OK", ""));
        const HookProcess hook(carrier, listener.port());
        fs::current_path(hook.folder());
        std::ofstream("cli.js") << "sh -c 'timeout 60 " << hook.script().string()
                                << " claude Stop </dev/null; :'; :";
        std::ofstream("errand.js") << "./node -e nested.js; :";
        std::ofstream("nested.js")
            << "timeout 60 sh -c '" << hook.script().string() << " claude Stop </dev/null; :'; :";
        std::ofstream("gone.js") << "rm \"$(readlink /proc/$$/exe)\"; . ./cli.js";
        fs::permissions(hook.script(), fs::perms::owner_all);
        for (const auto &[name, script, told] : cases) {
            fs::copy_file("/bin/sh", name, fs::copy_options::skip_existing);
            const pid_t child = fork();
            if (child == 0) {
                execl(name.c_str(), name.c_str(), "-u", script.c_str(),
                      "Why fails ./hook.sh claude Stop?", nullptr);
                _exit(1);
            }
            auto headers = listener.take().headers;
            waitpid(child, nullptr, 0);
            EXPECT_FALSE(headers.contains("x-evil"));
            EXPECT_TRUE(headers["x-morvane-process"].starts_with(std::to_string(child) + " "));
            if (!told.empty()) {
                EXPECT_EQ(headers["x-morvane-program"], fs::current_path() / told);
            } else if (carrier == Carrier::Client) {
                EXPECT_FALSE(headers.contains("x-morvane-program"));
            }
        }
        fs::remove("gr\xc3"); // Qt can't find it to remove it
        fs::current_path(before);
    }
}

// The inner sandbox sees the /proc of the outer one, where the number of its first process is
// another process's.
TEST(Program, IsNobodysWhoHasTheNumberElsewhere) {
    const std::string sandbox = std::string("unshare ") + (geteuid() == 0 ? "" : "-r ") +
                                "--pid --fork --mount-proc unshare --pid --fork ";
    if (std::system((sandbox + "true").c_str()) != 0) {
        GTEST_SKIP() << "needs a kernel that lets us make a number space";
    }
    for (const Carrier carrier : carriers) {
        CapturingListener listener(response("200 OK", ""));
        const HookProcess hook(carrier, listener.port());
        const std::string agent = hook.folder() / "agent.sh";
        std::ofstream(agent) << "sh '" << hook.script().string() << "' claude Stop </dev/null; :";
        EXPECT_EQ(std::system((sandbox + "sh '" + agent + "'").c_str()), 0);
        const auto headers = listener.take().headers;
        EXPECT_EQ(headers.at("x-hook-event"), "Stop");
        EXPECT_FALSE(headers.contains("x-morvane-process"));
        EXPECT_FALSE(headers.contains("x-morvane-program"));
    }
}

} // namespace

} // namespace morvane::tests
