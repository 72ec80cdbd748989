#include "Core/Sessions/AgentProcesses.h"

#include "Support/FakeProcesses.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

class AgentProcessesTest : public testing::Test {
protected:
    void tell(const QString &sessionID, const ProcessIdentity &process) {
        agents.told(sessionID, process, Seconds(5));
    }

    static QStringList take(QStringList &list) { return std::exchange(list, {}); }

    FakeProcesses processes;
    ManualScheduler scheduler;
    QStringList ended;
    AgentProcesses agents{processes, scheduler,
                          [this](const QString &sessionID) { ended.append(sessionID); }};
};

TEST_F(AgentProcessesTest, EndsTheSessionsOfAnAgentThatIsGone) {
    const ProcessIdentity agent{100, 1, 7};
    const ProcessIdentity other{100, 2, 7}; // a later process with the same id
    tell("a", agent);
    tell("b", agent);
    tell("c", other);
    tell("c", other);
    EXPECT_EQ(processes.watched(), 2U);
    tell("b", other);
    processes.end(agent);
    EXPECT_EQ(ended, QStringList{"a"});
    agents.forget("c");
    processes.end(other);
    EXPECT_EQ(take(ended), (QStringList{"a", "b"}));
    EXPECT_EQ(processes.watched(), 0U);

    // A hook of the agent may arrive after its end.
    tell("a", agent);
    EXPECT_EQ(take(ended), QStringList{"a"});
    const ProcessIdentity next{100, 3, 7};
    tell("a", next);
    tell("a", next);
    tell("a", agent);
    EXPECT_EQ(ended, QStringList()) << "another one has taken the session up";
    processes.end(next);
    EXPECT_EQ(ended, QStringList{"a"});
}

TEST_F(AgentProcessesTest, KnowsAnAgentThatHasToldOnlyOnce) {
    const ProcessIdentity agent{100, 1, 7};
    // What an agent starts for a single hook is no agent.
    tell("a", {200, 1, 7});
    scheduler.advance(Seconds(4.9));
    processes.end({200, 1, 7});
    EXPECT_EQ(ended, QStringList());
    tell("a", agent);
    scheduler.advance(Seconds(5));
    agents.forget("a");
    // An agent stays known without any session.
    processes.end(agent);
    tell("b", agent);
    EXPECT_EQ(ended, QStringList{"b"});

    // But only so many are kept, since some machines never tell the end of a process.
    for (int id = 200; id < 300; ++id) {
        tell("a", {id, 1, 7});
    }
    EXPECT_LT(processes.watched(), 70U);
}

} // namespace
} // namespace morvane
