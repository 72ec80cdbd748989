#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Row.h"
#include "Support/ManualScheduler.h"

#include <QHash>
#include <QTemporaryDir>

#include <string>
#include <tuple>
#include <vector>

// What one event costs the main thread with many sessions in the store: by itself, and with all
// that the views then ask the store for.

namespace {

using namespace morvane;

/// An event of a session, with all the fields that one usually has.
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

/// What the views of three screens ask for in one pass, each screen for itself.
void askForAllLists(SessionStore &store) {
    for (int screen = 0; screen < 3; ++screen) {
        std::ignore = store.aggregatedState();
        std::ignore = store.aggregatedStateSince();
        std::ignore = store.sortedSessions();
        std::ignore = store.activeSessions();
        std::ignore = store.reportableSessions();
        std::ignore = store.openSessions();
        std::ignore = store.jumpableCompleted();
        std::ignore = store.recentlyCompleted();
        std::ignore = store.archivedCompleted();
        std::ignore = store.hasPendingDecision();
        std::ignore = store.hasExternalPrompt();
        std::ignore = store.hasUnacknowledgedNeedsInput();
        std::ignore = store.hasReportableSessions();
        std::ignore = store.hasWorkingUsageMilestoneSession();
        std::ignore = store.showsAgentBadges();
    }
}

/// Seconds that one run takes, averaged over many.
double secondsOfEach(auto action) {
    constexpr int count = 3000;
    return secondsOf([&] {
               for (int index = 0; index < count; ++index) {
                   action();
               }
           }) /
           count;
}

/// The least that a store of values can do with an event.
class LeastStore {
public:
    explicit LeastStore(int sessions) : m_events(toolUses(sessions)) {
        for (const HookEvent &event : m_events) {
            m_sessions[event.sessionID].id = event.sessionID;
        }
    }

    void apply() {
        Session session = m_sessions.value(m_events[m_next++ % m_events.size()].sessionID);
        session.acknowledged = !session.acknowledged;
        m_sessions.insert(session.id, session);
    }

private:
    std::vector<HookEvent> m_events;
    Sessions m_sessions;
    std::size_t m_next = 0;
};

void measure(int sessions) {
    FullStore full(sessions);
    LeastStore least(sessions);
    const std::vector<HookEvent> events = toolUses(sessions, 3); // of sessions that already work
    std::size_t next = 0;
    const auto apply = [&] { full.store.apply(events[next++ % events.size()]); };
    const auto timeOfEvent = [&] { return secondsOfEach(apply); };
    const auto eventAndLists = [&] {
        apply();
        askForAllLists(full.store);
    };
    const std::string with =
        " with " + std::to_string(sessions) + (sessions == 1 ? " session" : " sessions");
    const std::string event = "an event" + with;
    compare({event.c_str(), "a session copied and put back into a hash"}, {}, timeOfEvent,
            [&] { return secondsOfEach([&] { least.apply(); }); });
    compare({event.c_str(), "1 µs", 1}, {}, timeOfEvent, [] { return 1e-6; });
    compare(
        {(event + " and the lists of three screens").c_str(), "1 ms", 1}, {.rounds = 7},
        [&] { return secondsOfEach(eventAndLists); }, [] { return 1e-3; });
}

} // namespace

int main() {
    measure(1);
    measure(100);
    measure(500);
}
