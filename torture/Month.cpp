#include "App/AppController.h"
#include "App/FakePlatform.h"
#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Settings/Defaults.h"
#include "Support/TemporaryHome.h"

#include <QApplication>
#include <QDirIterator>

#include <cstdio>
#include <filesystem>
#include <malloc.h>

// A month of work of all agents, in simulated time: what the program holds at the end of a day must
// be the same after a month as after the first days. The machine sleeps through every other night,
// now and then the clock is set by a day, and some sessions never report their end. Usage: month
// [DAYS]

namespace {

using namespace morvane;

constexpr int firstDays = 5; ///< until every history that is kept is full
constexpr int sessionsOfAnAgent = 6;
constexpr int turns = 4;
constexpr int toolsOfATurn = 15;
constexpr Seconds betweenEvents(5);
constexpr Seconds night(16 * 3600);
constexpr Seconds day(24 * 3600);
/// Leaves room for the allocator itself; growth with each session or day would be a multiple of it.
constexpr long long slack = 128 * 1024;

struct Holdings {
    long long bytes = 0;
    long descriptors = 0;
    long threads = 0;
    long timers = 0;
    long files = 0;
    long sessions = 0;
    long long settings = 0;
};

long count(const char *folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

class Month {
public:
    Month() {
        addFakeScreen(m_platform);
        m_settings.setShowWhenIdle(true);
        m_settings.setHasCompletedFirstRun(true);
        m_controller.start();
    }

    void work(int number) {
        for (int session = 0; session < sessionsOfAnAgent; ++session) {
            for (int turn = 0; turn < turns; ++turn) {
                everyAgent(number, session, "SessionStart BeforeAgent", turn);
                for (int tool = 0; tool < toolsOfATurn; ++tool) {
                    everyAgent(number, session, "PreToolUse", turn);
                }
                everyAgent(number, session, "Notification", turn);
                everyAgent(number, session, "Stop", turn);
            }
            // One session in six never reports its end.
            if (session != 0) {
                everyAgent(number, session, "SessionEnd", 0);
            }
        }
        if (number % 7 == 3) {
            scheduler().setClock(-day);
        } else if (number % 7 == 5) {
            scheduler().setClock(day);
        }
        m_asleep ? scheduler().setClock(night) : pass(night);
        m_asleep = !m_asleep;
        pass(Seconds(60));
    }

    Holdings holdings() {
        m_defaults.flush();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        Holdings result;
        result.bytes = static_cast<long long>(mallinfo2().uordblks);
        result.descriptors = count("/proc/self/fd");
        result.threads = count("/proc/self/task");
        result.timers = static_cast<long>(scheduler().timers());
        for (QDirIterator file(m_home.path(), QDir::Files | QDir::Hidden,
                               QDirIterator::Subdirectories);
             file.hasNext(); file.next()) {
            ++result.files;
        }
        result.settings = m_home.read("config/month.json").size();
        result.sessions = m_controller.store().sessions().size();
        return result;
    }

    long long events() const { return m_events; }

private:
    ManualScheduler &scheduler() { return static_cast<ManualScheduler &>(*m_platform.scheduler); }

    void pass(Seconds length) {
        scheduler().advance(length);
        static_cast<ManualPool &>(*m_platform.background).runAll();
        scheduler().runPosted();
        QCoreApplication::processEvents();
    }

    /// Sends each agent's own event that means to it what the name means to Claude Code.
    void everyAgent(int number, int session, const QString &name, int turn) {
        for (const AgentKind kind : allAgentKinds) {
            const QString id = QStringLiteral("%1-%2-%3").arg(number).arg(session).arg(int(kind));
            const QString body =
                QStringLiteral(R"({"session_id":"%1","conversation_id":"%1","cwd":"/projects/%1",)"
                               R"("prompt":"Turn %2 of %1","tool_name":"Bash",)"
                               R"("notification_type":"permission_prompt",)"
                               R"("tool_input":{"command":"make %1"}})")
                    .arg(id)
                    .arg(turn);
            for (const QString &native : namesFor(kind, name)) {
                if (const auto event = HookEvent::decode(AgentRegistry::adapter(kind), native,
                                                         body.toUtf8(), {})) {
                    m_controller.store().apply(*event);
                    ++m_events;
                }
            }
        }
        pass(betweenEvents);
    }

    static QStringList namesFor(AgentKind kind, const QString &name) {
        const auto meaning = [](const AgentAdapter &adapter, const QString &native) {
            return adapter.canonical(native, QStringLiteral("permission_prompt"));
        };
        const AgentAdapter &adapter = AgentRegistry::adapter(kind);
        const QStringList wanted = name.split(' ');
        QStringList result;
        for (const QString &native : adapter.nativeEvents()) {
            for (const QString &each : wanted) {
                const auto event = meaning(AgentRegistry::adapter(AgentKind::claude), each);
                const auto other = each == "BeforeAgent" ? CanonicalEvent::promptSubmit : event;
                if (other && meaning(adapter, native) == other) {
                    result << native;
                }
            }
        }
        return result;
    }

    TemporaryHome m_home;
    Defaults m_defaults{m_home.path("config"), "month"};
    MorvaneSettings m_settings{m_defaults};
    PlatformServices m_platform = fakePlatform();
    AppController m_controller{m_settings, m_platform};
    long long m_events = 0;
    bool m_asleep = false;
};

void print(int number, const Holdings &held) {
    std::printf("day %d: %lld KB in use, %ld descriptors, %ld threads, %ld timers, %ld files, %ld "
                "sessions, settings of %lld bytes\n",
                number, held.bytes / 1024, held.descriptors, held.threads, held.timers, held.files,
                held.sessions, held.settings);
}

/// The thread that writes the settings comes and goes.
bool hasGrown(const Holdings &before, const Holdings &after) {
    return after.bytes > before.bytes + slack || after.descriptors > before.descriptors ||
           after.threads > before.threads + 1 || after.timers > before.timers ||
           after.files > before.files || after.sessions > before.sessions ||
           after.settings > before.settings + before.settings / 10;
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int days = argc > 1 ? std::atoi(argv[1]) : 30;
    Month month;
    Holdings early;
    Holdings late;
    for (int number = 1; number <= days; ++number) {
        month.work(number);
        late = month.holdings();
        if (number == firstDays) {
            early = late;
        }
        if (number == 1 || number % firstDays == 0) {
            print(number, late);
        }
    }
    std::printf("%lld events in %d days\n", month.events(), days);
    return hasGrown(early, late) ? 1 : 0;
}
