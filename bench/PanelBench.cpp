// What it takes to open the panel, painted in software: the slowest frame with a busy day's rows,
// and all of it up to the first frame with more sessions than anybody has.

#include "Pictures/Stage.h"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace morvane;

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr Seconds frame(1.0 / 60);
constexpr int framesOfAnOpening = 30;
constexpr int runs = 7;

template <typename Action>
Milliseconds timeOf(const Action &action) {
    const auto start = Clock::now();
    action();
    return Clock::now() - start;
}

void fill(Stage &stage, int sessions) {
    for (int index = 0; index < sessions; ++index) {
        const QString cwd = QStringLiteral("/home/ada/service-%1").arg(index);
        stage.branches[cwd] = QStringLiteral("main");
        stage.tell(AgentKind::claude, cwd, QStringLiteral("UserPromptSubmit"),
                   R"("prompt":"Update the dependencies of this service")");
        stage.tell(AgentKind::claude, cwd, QStringLiteral("PreToolUse"),
                   R"("tool_name":"Bash","tool_input":{"command":"npm update"})");
    }
}

struct Opening {
    Milliseconds first{}; ///< until the first frame is painted
    Milliseconds slowestFrame{};
};

Opening open(int sessions) {
    Stage stage;
    fill(stage, sessions);
    Opening result;
    result.first = timeOf([&] {
        stage.presentPanel();
        stage.pass(frame);
    });
    result.slowestFrame = result.first;
    for (int count = 1; count < framesOfAnOpening; ++count) {
        result.slowestFrame = std::max(result.slowestFrame, timeOf([&] { stage.pass(frame); }));
    }
    return result;
}

/// What else the machine does only ever adds time.
Opening best(int sessions) {
    Opening result = open(sessions);
    for (int run = 1; run < runs; ++run) {
        const Opening next = open(sessions);
        result.first = std::min(result.first, next.first);
        result.slowestFrame = std::min(result.slowestFrame, next.slowestFrame);
    }
    return result;
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    std::printf("the slowest frame of an opening with 30 rows: %.2f of 16 ms\n",
                best(30).slowestFrame.count() / 16);
    std::printf("the first frame of an opening with 500 sessions: %.2f of 100 ms\n",
                best(500).first.count() / 100);
    return 0;
}
