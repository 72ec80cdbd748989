#include "EpollServer.h"

#include <cstdio>

/// Prints its port and serves until it is killed.
int main() {
    morvane::EpollServer server;
    if (server.port() == 0)
        return 1;
    std::printf("%d\n", server.port());
    std::fflush(stdout);
    server.run();
}
