#include "AgentProgram.h"

#include "HeaderText.h"
#include "Kernel.h"
#include "Process.h"

#include <cstddef>
#include <fcntl.h>

namespace morvane {

namespace {

/// More than stands between an agent and its hooks: a shell, perhaps a wrapper or two.
constexpr int mostWrappers = 5;
constexpr size_t longestPath = 1024;

/// The target of a link under /proc; a longer path counts as none.
struct Target {
    char bytes[longestPath + 1];
    size_t size = 0;

    Target(long id, std::string_view link) {
        const long length =
            kernel::call(SYS_readlinkat, AT_FDCWD, procPath(id, link).bytes, bytes, sizeof bytes);
        size = length < 0 ? 0 : static_cast<size_t>(length);
    }
};

std::string_view lastPart(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1);
    return path;
}

bool isInterpreter(std::string_view name) {
    name = lastPart(name);
    return name == "node" || name == "nodejs" || name == "bun" || name == "deno";
}

bool isShell(std::string_view name) {
    name = lastPart(name);
    name.remove_prefix(name.starts_with('-') ? 1 : 0); // of a login shell
    constexpr std::string_view shells[] = {"sh",   "ash",    "bash",  "busybox", "csh",
                                           "dash", "elvish", "fish",  "ksh",     "mksh",
                                           "nu",   "pwsh",   "rbash", "tcsh",    "zsh"};
    for (const std::string_view shell : shells) {
        if (name == shell)
            return true;
    }
    return false;
}

/// Takes the first argument off the front. Each ends with a zero byte; empty if one is cut off.
std::string_view takeArgument(std::string_view &arguments) {
    const size_t end = arguments.find('\0');
    const bool isWhole = end != std::string_view::npos;
    const std::string_view argument{arguments.data(), isWhole ? end : 0};
    arguments.remove_prefix(isWhole ? end + 1 : arguments.size());
    return argument;
}

/// The first argument behind the program's name that is no option.
std::string_view scriptIn(std::string_view arguments) {
    takeArgument(arguments);
    while (!arguments.empty()) {
        const std::string_view argument = takeArgument(arguments);
        if (!argument.empty() && argument.front() != '-')
            return argument;
    }
    return {};
}

/// Whether an interpreter runs a text given with -e: then it only does something for its parent.
bool isInlineScript(std::string_view arguments) {
    if (!isInterpreter(takeArgument(arguments)))
        return false;
    while (!arguments.empty() && arguments.front() == '-') {
        const std::string_view option = takeArgument(arguments);
        if (option == "-e" || option == "--eval")
            return true;
    }
    return false;
}

/// Takes the word off the front if it comes next, behind a blank or the end of an argument.
bool takeWord(std::string_view &text, std::string_view word) {
    if (text.empty() || (text.front() != ' ' && text.front() != '\0'))
        return false;
    text.remove_prefix(1);
    const bool isNext = text.starts_with(word);
    text.remove_prefix(isNext ? word.size() : 0);
    return isNext;
}

/// Whether a shell's arguments call hook.sh with this agent and event, also within a text.
bool speaksOfHook(std::string_view arguments, std::string_view name, std::string_view event) {
    const size_t script = arguments.find("/hook.sh");
    arguments.remove_prefix(script == std::string_view::npos ? arguments.size() : script);
    for (; !arguments.empty(); arguments.remove_prefix(1)) {
        std::string_view rest = arguments;
        if (takeWord(rest, name) && takeWord(rest, event))
            return true;
    }
    return false;
}

/// Whether these arguments call hook.sh with this agent and event. A call within a single argument
/// counts only behind a shell: an agent's prompt may hold the same words.
bool callsHook(std::string_view arguments, std::string_view name, std::string_view event) {
    while (!arguments.empty()) {
        const std::string_view argument = takeArgument(arguments);
        if (isShell(argument))
            return speaksOfHook(arguments, name, event);
        if (argument.ends_with("/hook.sh"))
            return takeArgument(arguments) == name && takeArgument(arguments) == event;
    }
    return false;
}

/// Joins folder (may be empty) and name (may be a path). Static, since the text outlives the call.
std::string_view kept(std::string_view folder, std::string_view name) {
    static char bytes[longestPath];
    size_t size = 0;
    const std::string_view slash = folder.empty() ? "" : "/";
    for (const std::string_view part : {folder, slash, name}) {
        for (const char c : part) {
            if (size == sizeof bytes)
                return {};
            bytes[size++] = c;
        }
    }
    const std::string_view path{bytes, size};
    return fitsInHeader(path) ? path : std::string_view{};
}

} // namespace

Agent agent(std::string_view name, std::string_view event) {
    static char bytes[4096];
    long id = isProcOurs() ? kernel::call(SYS_getppid) : 0;
    for (int i = 0; i < mostWrappers && id > 0; ++i, id = processOf(id).parent) {
        const size_t size = readFile(procPath(id, "/cmdline").bytes, bytes, sizeof bytes);
        const std::string_view arguments{bytes, size};
        if (!callsHook(arguments, name, event) && !isInlineScript(arguments))
            return {id, arguments};
    }
    return {};
}

std::string_view programOf(const Agent &agent) {
    const Target program{agent.process, "/exe"};
    std::string_view path{program.bytes, program.size};
    constexpr std::string_view replaced = " (deleted)"; // after an update
    if (path.ends_with(replaced))
        path.remove_suffix(replaced.size());
    if (!isInterpreter(path))
        return kept({}, path);
    const std::string_view script = scriptIn(agent.arguments);
    if (script.empty() || script.front() == '/')
        return kept({}, script);
    const Target folder{agent.process, "/cwd"};
    return folder.size == 0 ? std::string_view{} : kept({folder.bytes, folder.size}, script);
}

ShortText identityOf(const Agent &agent) {
    ShortText identity;
    const long startedAt = processOf(agent.process).startedAt;
    // As in "pid:[4026531836]".
    const Target space{agent.process, "/ns/pid"};
    std::string_view number{space.bytes, space.size};
    const size_t begin = number.find('[');
    if (startedAt == 0 || begin == std::string_view::npos)
        return identity;
    number.remove_prefix(begin + 1);
    number.remove_suffix(1);
    identity.add(agent.process);
    identity.add(" ");
    identity.add(startedAt);
    identity.add(" ");
    identity.add(number);
    return identity;
}

} // namespace morvane
