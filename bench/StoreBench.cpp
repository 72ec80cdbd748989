#include "Core/Defaults.h"
#include "Core/MorvaneSettings.h"
#include "Core/SessionStore.h"
#include "Support/ManualScheduler.h"

#include <QHash>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// What one event costs the main thread with a hundred sessions in the store.

namespace {

using namespace morvane;

HookEvent toolUse(int session) {
    HookEvent event;
    event.kind = CanonicalEvent::toolUse;
    event.sessionID = QStringLiteral("session-%1").arg(session);
    event.cwd = QStringLiteral("/home/ada/project-%1").arg(session);
    event.toolName = QStringLiteral("Bash");
    event.termProgram = QStringLiteral("kitty");
    event.transcriptPath = QStringLiteral("/home/ada/.claude/projects/p/%1.jsonl").arg(session);
    return event;
}

std::vector<HookEvent> hundredEvents() {
    std::vector<HookEvent> events;
    for (int session = 0; session < 100; ++session) {
        events.push_back(toolUse(session));
    }
    return events;
}

void applyToHundredSessions(benchmark::State &state) {
    const QTemporaryDir folder;
    Defaults defaults(folder.path(), QStringLiteral("bench"));
    MorvaneSettings settings(defaults);
    ManualScheduler scheduler;
    const auto nothing = [](const auto &...) -> std::optional<QString> { return std::nullopt; };
    SessionStore store(settings, {nothing, nothing, nothing}, scheduler);
    const std::vector<HookEvent> events = hundredEvents();
    std::size_t next = 0;
    for (auto _ : state) {
        store.apply(events[next++ % events.size()]);
    }
}
BENCHMARK(applyToHundredSessions);

/// The measure: the least that a store of values can do with an event.
void copyAndPutBack(benchmark::State &state) {
    QHash<QString, Session> sessions;
    const std::vector<HookEvent> events = hundredEvents();
    for (const HookEvent &event : events) {
        sessions[event.sessionID].id = event.sessionID;
    }
    std::size_t next = 0;
    for (auto _ : state) {
        Session session = sessions.value(events[next++ % events.size()].sessionID);
        session.acknowledged = !session.acknowledged;
        sessions.insert(session.id, session);
    }
}
BENCHMARK(copyAndPutBack);

/// Keeps each benchmark's time instead of printing it.
class Times : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &run : runs) {
            nanoseconds[run.benchmark_name()] = run.GetAdjustedCPUTime();
        }
    }

    std::map<std::string, double> nanoseconds;
};

} // namespace

int main(int argc, char **argv) {
    constexpr double limit = 20'000;
    benchmark::Initialize(&argc, argv);
    Times times;
    benchmark::RunSpecifiedBenchmarks(&times);
    const double apply = times.nanoseconds["applyToHundredSessions"];
    std::printf("an event on 100 sessions / a copy put back: %.2f\n",
                apply / times.nanoseconds["copyAndPutBack"]);
    std::printf("an event on 100 sessions / its limit of 20 us: %.3f\n", apply / limit);
}
