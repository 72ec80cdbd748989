#include "Row.h"

#include <xcb/xcb.h>

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <netinet/in.h>
#include <optional>
#include <spawn.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// How long the program takes from its start until its server listens and until something of it is
// on the screen, as a multiple of what an empty window takes. Both start in the environment of this
// process, which names a display and a home folder of their own.
//
//     start_bench PROGRAM PORT EMPTY_WINDOW

namespace {

using namespace morvane;

/// The upper edge of the display, where the capsule appears.
class UpperEdge {
public:
    UpperEdge() : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection) != 0) {
            std::abort();
        }
    }
    ~UpperEdge() { xcb_disconnect(m_connection); }
    UpperEdge(const UpperEdge &) = delete;
    UpperEdge &operator=(const UpperEdge &) = delete;

    std::string pixels() {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        constexpr std::uint16_t height = 40;
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0,
                                          0, screen->width_in_pixels, height, ~std::uint32_t(0));
        xcb_get_image_reply_t *reply = xcb_get_image_reply(m_connection, cookie, nullptr);
        if (reply == nullptr) {
            std::abort();
        }
        std::string result(reinterpret_cast<const char *>(xcb_get_image_data(reply)),
                           static_cast<std::size_t>(xcb_get_image_data_length(reply)));
        std::free(reply);
        return result;
    }

private:
    xcb_connection_t *m_connection;
};

bool listens(std::uint16_t port) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool connected =
        connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    close(descriptor);
    return connected;
}

class Child {
public:
    explicit Child(std::string program) {
        std::array<char *, 2> arguments{program.data(), nullptr};
        if (posix_spawn(&m_process, program.c_str(), nullptr, nullptr, arguments.data(), environ) !=
            0) {
            std::abort();
        }
    }
    ~Child() {
        kill(m_process, SIGTERM);
        waitpid(m_process, nullptr, 0);
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

private:
    pid_t m_process = 0;
};

/// Polls the condition, without taking a processor from the measured program.
void await(auto condition) {
    while (!condition()) {
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
}

double secondsToListen(const std::string &program, std::uint16_t port) {
    std::optional<Child> child;
    return secondsOf([&] {
        child.emplace(program);
        await([&] { return listens(port); });
    });
}

double secondsToShow(const std::string &program, UpperEdge &edge) {
    const std::string empty = edge.pixels();
    std::optional<Child> child;
    const double result = secondsOf([&] {
        child.emplace(program);
        await([&] { return edge.pixels() != empty; });
    });
    child.reset();
    await([&] { return edge.pixels() == empty; });
    return result;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        return 2;
    }
    const std::string program = argv[1];
    const auto port = static_cast<std::uint16_t>(std::atoi(argv[2]));
    const std::string emptyWindow = argv[3];
    UpperEdge edge;
    const auto least = [&] { return secondsToShow(emptyWindow, edge); };
    compare(
        {"from the start to listening", "an empty Qt window on the screen", 1.5}, {.turns = 3},
        [&] { return secondsToListen(program, port); }, least);
    compare(
        {"from the start to the first pixel", "an empty Qt window on the screen", 1.5},
        {.turns = 3}, [&] { return secondsToShow(program, edge); }, least);
}
