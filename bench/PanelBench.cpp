// What it takes to open the panel, painted in software: the slowest frame with a busy day's rows,
// and the time to the first frame with more sessions than anybody has.

#include "Pictures/Stage.h"
#include "Row.h"

#include <QApplication>

#include <algorithm>
#include <string>

using namespace morvane;

namespace {

constexpr Seconds frame(1.0 / 60);
constexpr int framesOfAnOpening = 30;

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

/// Seconds until the first frame of an opening panel is painted.
double firstFrame(Stage &stage) {
    return secondsOf([&] {
        stage.presentPanel();
        stage.pass(frame);
    });
}

/// Seconds that the slowest frame of an opening takes.
double slowestFrame() {
    Stage stage;
    fill(stage, 30);
    double slowest = firstFrame(stage);
    for (int count = 1; count < framesOfAnOpening; ++count) {
        slowest = std::max(slowest, secondsOf([&] { stage.pass(frame); }));
    }
    return slowest;
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const std::string scale = " at " + std::to_string(int(application.devicePixelRatio())) + "x";
    compare({("the slowest frame of an opening panel with 30 rows" + scale).c_str(), "4 ms", 1}, {},
            slowestFrame, [] { return 0.004; });
    compare(
        {("the first frame of an opening panel with 500 sessions" + scale).c_str(), "100 ms", 1},
        {},
        [] {
            Stage stage;
            fill(stage, 500);
            return firstFrame(stage);
        },
        [] { return 0.1; });
}
