#include "HookProcess.h"
#include "Loopback.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <numeric>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

// siege PID PORT TOKEN: besieges the running program, which has this process id and the home folder
// in the environment. Makes ten thousand hostile connections while the hooks of eight agents go on,
// then sends a day's events at ten thousand times the usual rate. Fails when a hook's event is
// lost, or when the program holds more afterwards than before.

namespace {

using namespace morvane;
using Clock = std::chrono::steady_clock;

constexpr std::size_t strangers = 10'000;
constexpr std::size_t atOnce = 400;
constexpr int calmRounds = 60;
constexpr auto patience = std::chrono::seconds(10);
/// By then the server has closed every connection without a complete request.
constexpr auto requestLimit = std::chrono::seconds(35);

// --- The program from outside ---

struct Program {
    int process = 0;
    std::uint16_t port = 0;
    std::string token;
    std::string settings;
    std::string hook;
};

QJsonObject settingsOf(const Program &program) {
    QFile file(QString::fromStdString(program.settings));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

struct Holdings {
    long memory = 0; ///< private kilobytes
    long peak = 0;
    long descriptors = 0;
    long threads = 0;
};

long figure(const std::string &file, const std::string &name) {
    std::ifstream status(file);
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::atol(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

Holdings holdings(const Program &program) {
    namespace fs = std::filesystem;
    const std::string folder = "/proc/" + std::to_string(program.process);
    return {figure(folder + "/smaps_rollup", "Private_Dirty"), figure(folder + "/status", "VmHWM"),
            std::distance(fs::directory_iterator(folder + "/fd"), {}),
            std::distance(fs::directory_iterator(folder + "/task"), {})};
}

void print(const char *when, const Holdings &held) {
    std::printf("%s: %.1f MB of its own (peak of all %.1f MB), %ld descriptors, %ld threads\n",
                when, static_cast<double>(held.memory) / 1024,
                static_cast<double>(held.peak) / 1024, held.descriptors, held.threads);
}

/// What the program holds once its descriptors and threads are back, or a request's time is up.
Holdings settled(const Program &program, const Holdings &before) {
    const auto start = Clock::now();
    Holdings result = holdings(program);
    const auto isBack = [&] {
        return result.descriptors <= before.descriptors && result.threads <= before.threads;
    };
    while (!isBack() && Clock::now() < start + requestLimit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        result = holdings(program);
    }
    std::this_thread::sleep_for(std::chrono::seconds(2)); // how long last words are searched for
    std::printf("its descriptors and threads were back after %.1f s\n",
                std::chrono::duration<double>(Clock::now() - start).count() - 2);
    return holdings(program);
}

// --- Strangers ---

enum class Manner {
    slowHead,
    longerThanSaid,
    shorterThanSaid,
    absurdLength,
    halfHead,
    wrongToken,
    megabyteHead,
    megabyteBody,
    reset,
    noise,
};
constexpr std::size_t manners = 10;

/// What a stranger sends, and how it leaves.
struct Stranger {
    std::string bytes;
    bool trickles = false; ///< a byte at a time
    bool resets = false;
    bool waits = false; ///< for the server to close
};

Stranger stranger(Manner manner) {
    const std::string start = "POST /event HTTP/1.1\r\nx-hook-event: Stop\r\n";
    const auto length = [](const std::string &text) {
        return "Content-Length: " + text + "\r\n\r\n";
    };
    switch (manner) {
    case Manner::slowHead:
        return {start + std::string(40, 'x'), true};
    case Manner::longerThanSaid:
        return {start + length("5") + R"({"session_id":"stranger"})", false, false, true};
    case Manner::shorterThanSaid:
        return {start + length("100000") + "{}"};
    case Manner::absurdLength:
        return {start + length("-99999999999999999999"), false, false, true};
    case Manner::halfHead:
        return {start.substr(0, start.size() / 2)};
    case Manner::wrongToken:
        return {start + "x-morvane-token: " + std::string(72, 'A') + "\r\n" + length("26") +
                    R"({"session_id":"stranger!"})",
                false, false, true};
    case Manner::megabyteHead:
        return {start + "x-filler: " + std::string(1 << 20, 'h')};
    case Manner::megabyteBody:
        return {start + length("1048576") + std::string(1 << 20, 'b')};
    case Manner::reset:
        return {start + length("1000") + "{", false, true};
    case Manner::noise: {
        std::string bytes(3000, '\0');
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            bytes[index] = static_cast<char>(index * 2'654'435'761U >> 7);
        }
        return {bytes, false, false, true};
    }
    }
    return {};
}

/// One connection under way.
class Visit {
public:
    Visit(const Program &program, std::size_t number)
        : m_manner(stranger(static_cast<Manner>(number % manners))),
          m_socket(connectToLoopback(program.port)), m_end(Clock::now() + std::chrono::seconds(3)) {
    }
    Visit(Visit &&other) noexcept
        : m_manner(std::move(other.m_manner)), m_sent(other.m_sent),
          m_socket(std::exchange(other.m_socket, -1)), m_end(other.m_end) {}
    Visit &operator=(Visit &&other) noexcept {
        std::swap(m_socket, other.m_socket);
        m_manner = std::move(other.m_manner);
        m_sent = other.m_sent;
        m_end = other.m_end;
        return *this;
    }
    ~Visit() { close(m_socket); }

    /// Makes one step; false once the visit is over.
    bool step() {
        const bool isSent = m_sent == m_manner.bytes.size();
        if (!isSent) {
            const std::size_t most = m_manner.trickles ? 1 : m_manner.bytes.size() - m_sent;
            const ssize_t count =
                send(m_socket, m_manner.bytes.data() + m_sent, most, MSG_NOSIGNAL);
            if (count < 0 && errno != EAGAIN && errno != ENOTCONN) {
                return false;
            }
            m_sent += count > 0 ? static_cast<std::size_t>(count) : 0;
            return Clock::now() < m_end;
        }
        if (m_manner.resets) {
            const linger atOnceGone{1, 0};
            setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnceGone, sizeof atOnceGone);
            return false;
        }
        std::array<char, 1024> answer{};
        const ssize_t count = recv(m_socket, answer.data(), answer.size(), 0);
        const bool isOver = count == 0 || (count < 0 && errno != EAGAIN);
        return m_manner.waits && !isOver && Clock::now() < m_end;
    }

private:
    Stranger m_manner;
    std::size_t m_sent = 0;
    int m_socket;
    Clock::time_point m_end;
};

/// Runs in a process of its own, whose memory and time don't count as a hook's.
pid_t besiege(const Program &program) {
    const pid_t child = fork();
    if (child != 0) {
        return child;
    }
    std::vector<Visit> visits;
    for (std::size_t made = 0; made < strangers || !visits.empty();) {
        while (made < strangers && visits.size() < atOnce) {
            visits.emplace_back(program, made++);
        }
        std::erase_if(visits, [](Visit &visit) { return !visit.step(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    std::_Exit(0);
}

// --- Hooks ---

struct Agent {
    const char *name;
    std::array<const char *, 3> turn; ///< the events that begin it, end it, and end the session
};

constexpr std::array agents{Agent{"claude", {"UserPromptSubmit", "Stop", "SessionEnd"}},
                            Agent{"codex", {"UserPromptSubmit", "Stop", "SessionEnd"}},
                            Agent{"gemini", {"BeforeAgent", "AfterAgent", "SessionEnd"}},
                            Agent{"cursor", {"beforeSubmitPrompt", "stop", "sessionEnd"}},
                            Agent{"kimi", {"UserPromptSubmit", "Stop", "SessionEnd"}},
                            Agent{"qwen", {"BeforeAgent", "AfterAgent", "SessionEnd"}},
                            Agent{"qoder", {"UserPromptSubmit", "Stop", "SessionEnd"}},
                            Agent{"factory", {"UserPromptSubmit", "Stop", "SessionEnd"}}};

struct Figures {
    std::vector<double> times; ///< of each hook, in milliseconds
    int lost = 0;
};

/// Whether the program has saved all turns of this round as finished.
bool areWrittenDown(const Program &program, int round) {
    const QByteArray history = QByteArray::fromBase64(
        settingsOf(program)["completedHistory"].toObject()["$data"].toString().toLatin1());
    return std::ranges::all_of(agents, [&](const Agent &agent) {
        return history.contains("turn-" + QByteArray::number(round) + '-' + agent.name);
    });
}

/// Each agent begins a turn and ends it, in a session and a folder of its own.
void oneRound(const Program &program, int round, Figures &figures) {
    for (const Agent &agent : agents) {
        const std::string id = "turn-" + std::to_string(round) + '-' + agent.name;
        const std::string payload = R"({"session_id":")" + id + R"(","conversation_id":")" + id +
                                    R"(","cwd":"/tmp/)" + id + R"(","prompt":"Go"})";
        for (const char *event : agent.turn) {
            figures.times.push_back(timeOfProcess({program.hook, agent.name, event}, payload) *
                                    1000);
        }
    }
    const auto limit = Clock::now() + patience;
    while (!areWrittenDown(program, round)) {
        if (Clock::now() > limit) {
            ++figures.lost;
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

double percentile(std::vector<double> times, std::size_t percent) {
    std::ranges::sort(times);
    return times[times.size() * percent / 100];
}

void print(const char *when, const Figures &figures) {
    std::printf("%s: %zu hooks, median %.2f ms, 99th percentile %.2f ms, %d rounds of 24 with a "
                "hook lost\n",
                when, figures.times.size(), percentile(figures.times, 50),
                percentile(figures.times, 99), figures.lost);
}

// --- A day at ten thousand times the usual rate ---

constexpr int eventsOfADay = 8 * 24 * 3600 / 5; ///< of eight agents, each every five seconds
constexpr double factor = 10'000;

/// Posts an event as the hook's client does, on a connection of its own; true if it was taken.
bool post(const Program &program, int number) {
    const std::string body = R"({"session_id":"day-)" + std::to_string(number % 8) +
                             R"(","cwd":"/tmp/day","tool_name":"Bash","tool_input":{"command":")" +
                             std::to_string(number) + R"("}})";
    const std::string request = "POST /event HTTP/1.1\r\nx-morvane-token: " + program.token +
                                "\r\nx-morvane-agent: claude\r\nx-hook-event: PreToolUse\r\n"
                                "Content-Length: " +
                                std::to_string(body.size()) + "\r\n\r\n" + body;
    const int connection = connectToLoopback(program.port);
    pollfd ready{connection, POLLOUT, 0};
    poll(&ready, 1, 10'000);
    std::array<char, 64> answer{};
    bool isTaken = send(connection, request.data(), request.size(), MSG_NOSIGNAL) ==
                   static_cast<ssize_t>(request.size());
    ready.events = POLLIN;
    isTaken = isTaken && poll(&ready, 1, 10'000) == 1 &&
              recv(connection, answer.data(), answer.size(), 0) > 12 &&
              std::string_view(answer.data()).starts_with("HTTP/1.1 200");
    close(connection);
    return isTaken;
}

int liveADay(const Program &program) {
    constexpr int clients = 4;
    std::array<int, clients> refused{};
    const auto start = Clock::now();
    std::vector<std::thread> threads;
    for (int client = 0; client < clients; ++client) {
        threads.emplace_back([&, client] {
            for (int number = client; number < eventsOfADay; number += clients) {
                refused[static_cast<std::size_t>(client)] += post(program, number) ? 0 : 1;
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const int lost = std::accumulate(refused.begin(), refused.end(), 0);
    std::printf("a day of %d events in %.1f s, %.0f times the usual rate (asked for: %.0f); %d "
                "lost\n",
                eventsOfADay, seconds, 24 * 3600 / seconds, factor, lost);
    return lost;
}

} // namespace

int main(int argc, char **argv) {
    const char *home = std::getenv("HOME");
    if (argc != 4 || home == nullptr) {
        return 2;
    }
    const Program program{std::atoi(argv[1]), static_cast<std::uint16_t>(std::atoi(argv[2])),
                          argv[3], std::string(home) + "/.config/morvane/io.morvane.morvane.json",
                          std::string(home) + "/.morvane/hook.sh"};
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    int round = 0;
    Figures warming;
    while (round < calmRounds / 4) {
        oneRound(program, round++, warming);
    }
    const Holdings before = holdings(program);
    print("before", before);

    Figures calm;
    Figures besiegedBy;
    for (int count = 0; count < calmRounds; ++count) {
        oneRound(program, round++, calm);
    }
    print("calm", calm);
    const pid_t army = besiege(program);
    while (waitpid(army, nullptr, WNOHANG) == 0) {
        oneRound(program, round++, besiegedBy);
    }
    std::printf("%zu connections of %zu manners\n", strangers, manners);
    print("besieged", besiegedBy);
    std::printf("99th percentile besieged / calm: %.2f, median: %.2f\n",
                percentile(besiegedBy.times, 99) / percentile(calm.times, 99),
                percentile(besiegedBy.times, 50) / percentile(calm.times, 50));
    const Holdings after = settled(program, before);
    print("afterwards", after);

    const int refused = liveADay(program);
    Figures last;
    oneRound(program, round++, last);
    const Holdings end = settled(program, before);
    print("after the day", end);

    const auto isBack = [&](const Holdings &held) {
        return held.descriptors <= before.descriptors && held.threads <= before.threads &&
               held.memory <= before.memory + 4 * 1024;
    };
    const bool isWhole = calm.lost + besiegedBy.lost + last.lost + refused == 0;
    return isWhole && isBack(after) && isBack(end) ? 0 : 1;
}
