#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Support/ManualScheduler.h"

#include <QHash>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// What one event costs the main thread with many sessions in the store: by itself, and with all
// that the views then ask the store for.

namespace {

using namespace morvane;

/// Of a session with all that one usually comes to have, in various states.
HookEvent event(CanonicalEvent kind, int session) {
    HookEvent event;
    event.kind = kind;
    event.sessionID = QStringLiteral("session-%1").arg(session);
    event.cwd = QStringLiteral("/home/ada/project-%1").arg(session);
    event.toolName = QStringLiteral("Bash");
    event.termProgram = QStringLiteral("kitty");
    event.hostBundleID = QStringLiteral("net.kovidgoyal.kitty");
    event.ttyName = QStringLiteral("/dev/pts/%1").arg(session);
    event.pane.kitty = QString::number(session);
    event.prompt = QStringLiteral("Fix the build of project %1").arg(session);
    event.transcriptPath = QStringLiteral("/home/ada/.claude/projects/p/%1.jsonl").arg(session);
    return event;
}

std::vector<HookEvent> toolUses(int sessions, int step = 1) {
    std::vector<HookEvent> events;
    for (int session = 0; session < sessions; session += step) {
        events.push_back(event(CanonicalEvent::toolUse, session));
    }
    return events;
}

/// A store whose sessions are all idle but for a third, which work.
struct FullStore {
    explicit FullStore(int sessions) {
        for (int session = 0; session < sessions; ++session) {
            store.apply(event(CanonicalEvent::promptSubmit, session));
            if (session % 3 != 0) {
                store.apply(event(CanonicalEvent::sessionStart, session));
            }
        }
    }

    static std::optional<QString> nothing(const QString &) { return std::nullopt; }

    QTemporaryDir folder;
    Defaults defaults{folder.path(), QStringLiteral("bench")};
    MorvaneSettings settings{defaults};
    ManualScheduler scheduler;
    SessionStore store{
        settings, {nothing, nothing, [](const auto &...) { return std::nullopt; }}, scheduler};
};

void applyToHundredSessions(benchmark::State &state) {
    FullStore full(100);
    const std::vector<HookEvent> events = toolUses(100);
    std::size_t next = 0;
    for (auto _ : state) {
        full.store.apply(events[next++ % events.size()]);
    }
}
BENCHMARK(applyToHundredSessions);

/// One pass of three screens' views, each of which asks for itself.
void askForAllLists(SessionStore &store) {
    for (int screen = 0; screen < 3; ++screen) {
        benchmark::DoNotOptimize(store.aggregatedState());
        benchmark::DoNotOptimize(store.aggregatedStateSince());
        benchmark::DoNotOptimize(store.sortedSessions());
        benchmark::DoNotOptimize(store.activeSessions());
        benchmark::DoNotOptimize(store.reportableSessions());
        benchmark::DoNotOptimize(store.openSessions());
        benchmark::DoNotOptimize(store.jumpableCompleted());
        benchmark::DoNotOptimize(store.recentlyCompleted());
        benchmark::DoNotOptimize(store.archivedCompleted());
        benchmark::DoNotOptimize(store.hasPendingDecision());
        benchmark::DoNotOptimize(store.hasExternalPrompt());
        benchmark::DoNotOptimize(store.hasUnacknowledgedNeedsInput());
        benchmark::DoNotOptimize(store.hasReportableSessions());
        benchmark::DoNotOptimize(store.hasWorkingUsageMilestoneSession());
        benchmark::DoNotOptimize(store.showsAgentBadges());
    }
}

void applyToFiveHundredAndList(benchmark::State &state) {
    FullStore full(500);
    const std::vector<HookEvent> events = toolUses(500, 3); // of those that work already
    std::size_t next = 0;
    for (auto _ : state) {
        full.store.apply(events[next++ % events.size()]);
        askForAllLists(full.store);
    }
}
BENCHMARK(applyToFiveHundredAndList);

/// The measure: the least that a store of values can do with an event.
void copyAndPutBack(benchmark::State &state) {
    QHash<QString, Session> sessions;
    const std::vector<HookEvent> events = toolUses(100);
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
    constexpr double listsLimit = 1'000'000;
    benchmark::Initialize(&argc, argv);
    Times times;
    benchmark::RunSpecifiedBenchmarks(&times);
    const double apply = times.nanoseconds["applyToHundredSessions"];
    std::printf("an event on 100 sessions / a copy put back: %.2f\n",
                apply / times.nanoseconds["copyAndPutBack"]);
    std::printf("an event on 100 sessions / its limit of 20 us: %.3f\n", apply / limit);
    std::printf("an event on 500 sessions and all lists of it / its limit of 1 ms: %.3f\n",
                times.nanoseconds["applyToFiveHundredAndList"] / listsLimit);
}
