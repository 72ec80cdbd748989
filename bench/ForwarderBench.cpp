#include "EpollServer.h"
#include "HookProcess.h"
#include "Row.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

// How long agents wait for each hook and each status line, as a multiple of an empty shell.

namespace fs = std::filesystem;
using namespace morvane;

int main() {
    const std::string token(72, 'A');
    std::string pattern = (fs::temp_directory_path() / "forwarder-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    EpollServer server;
    std::thread thread([&server] { server.run(); });

    // The client comes first: a script trusts no client that is newer than itself.
    fs::create_directories(folder / "client");
    fs::copy_file(FORWARDER, folder / "client" / CLIENT_NAME);
    const auto timeOf = [&](const char *place, Script script) {
        const auto file = rendered(script, folder / place, server.port(), token);
        return [file, input = usualInput(script)] {
            return timeOfProcess({file, "claude", "PreToolUse"}, input);
        };
    };
    const auto shell = [] { return timeOfProcess({"/bin/sh", "-c", ":"}, {}); };
    compare({"`hook.sh`", "`sh -c :`", 1.5}, {.turns = 40}, timeOf("client", Script::hook), shell);
    compare({"`statusline.sh`", "`sh -c :`", 5}, {.turns = 40},
            timeOf("client", Script::statusLine), shell);
    compare({"`hook.sh` by way of curl", "`sh -c :`"}, {.turns = 6}, timeOf("curl", Script::hook),
            shell);

    server.stop();
    thread.join();
    fs::remove_all(folder);
}
