#pragma once

#include "Core/Usage/UsageFakes.h"
#include "Core/Usage/UsagePoller.h"
#include "Support/ManualPool.h"
#include "Support/ManualScheduler.h"
#include "Support/TemporaryHome.h"

namespace morvane {

/// A poller of limits, and agents that report to it what the test wants.
class UsageWorld {
public:
    UsageWorld(MorvaneSettings &settings, ManualScheduler &scheduler,
               std::function<bool()> milestoneEligibility)
        : m_scheduler(scheduler),
          m_poller(settings, {scheduler, m_pool, m_secrets, m_https, m_dialogue}, "1",
                   std::move(milestoneEligibility)) {}

    UsagePoller &poller() { return m_poller; }

    /// Polls once: Claude's endpoint answers with this body, and Codex with these limits; an empty
    /// argument means no answer.
    void poll(const QByteArray &claude, const QByteArray &codex = {}) {
        const TemporaryHome home;
        if (!claude.isEmpty()) {
            home.write(".claude/.credentials.json", R"({"claudeAiOauth":{"accessToken":"t"}})");
        }
        if (!codex.isEmpty()) {
            home.write(".codex/auth.json");
            home.writeProgram(".local/bin/codex");
        }
        m_dialogue.says = {"{\"id\":1,\"result\":{}}\n",
                           R"({"id":2,"result":{"rateLimits":)" + codex + "}}\n"};
        m_poller.refreshNow();
        m_scheduler.advance(Seconds(0));
        m_pool.runAll();
        m_scheduler.advance(Seconds(0));
        if (!claude.isEmpty()) {
            m_https.answer(HttpsAnswer{200, {}, claude});
        }
    }

    /// Claude's status line reports these percentages.
    void tell(int session, int weekly = 0) {
        m_poller.ingestLive(
            R"({"rate_limits":{"five_hour":{"used_percentage":)" + QByteArray::number(session) +
                R"(},"seven_day":{"used_percentage":)" + QByteArray::number(weekly) + "}}}",
            AgentKind::claude);
    }

    /// A limit's window as the endpoint reports it.
    QByteArray window(int percent, Seconds untilReset) const {
        return R"({"utilization":)" + QByteArray::number(percent) + R"(,"resets_at":)" +
               reset(untilReset) + '}';
    }

    /// A limit's window as Codex reports it.
    QByteArray codexWindow(int percent, int minutes, Seconds untilReset) const {
        return R"({"usedPercent":)" + QByteArray::number(percent) + R"(,"windowDurationMins":)" +
               QByteArray::number(minutes) + R"(,"resetsAt":)" + reset(untilReset) + '}';
    }

private:
    QByteArray reset(Seconds away) const {
        const Seconds moment = m_scheduler.now().time_since_epoch() + away;
        return QByteArray::number(moment.count(), 'f', 0);
    }

    ManualScheduler &m_scheduler;
    ManualPool m_pool;
    NullSecretStore m_secrets;
    FakeHttpsClient m_https;
    FakeDialogue m_dialogue;
    UsagePoller m_poller;
};

} // namespace morvane
