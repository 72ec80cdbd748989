#include "EpollServer.h"
#include "HookProcess.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

// What a hook costs the agent: the forwarder's time as a multiple of an empty shell's, with the
// client and with curl. The runs take turns, so that a busy moment meets all alike.

namespace {

namespace fs = std::filesystem;
using morvane::renderedHook;

struct Contender {
    std::string name;
    std::vector<std::string> arguments;
    std::vector<double> times;
};

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    constexpr int warmUps = 30;
    constexpr int runs = 300;

    const std::string token(72, 'A');
    std::string pattern = (fs::temp_directory_path() / "forwarder-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    morvane::EpollServer server;
    std::thread thread([&server] { server.run(); });

    // The client first: a script trusts none that is newer.
    fs::create_directories(folder / "client");
    fs::copy_file(FORWARDER, folder / "client" / CLIENT_NAME);
    const fs::path withClient = renderedHook(folder / "client", server.port(), token);
    const fs::path withCurl = renderedHook(folder / "curl", server.port(), token);
    std::array<Contender, 3> contenders{
        Contender{"an empty shell", {"/bin/sh", "-c", ":"}, {}},
        Contender{"hook.sh", {withClient, "claude", "PreToolUse"}, {}},
        Contender{"hook.sh with curl", {withCurl, "claude", "PreToolUse"}, {}}};
    for (int i = -warmUps; i < runs; ++i) {
        for (Contender &contender : contenders) {
            const double time = morvane::timeOfProcess(contender.arguments);
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
