#include "Core/Sessions/AgentProcesses.h"

#include "Support/FakeProcesses.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(AgentProcesses, EndsTheSessionsOfAnAgentThatIsGone) {
    FakeProcesses processes;
    QStringList ended;
    AgentProcesses agents(processes, [&](const QString &sessionID) { ended.append(sessionID); });
    const ProcessIdentity agent{100, 1, 7};
    const ProcessIdentity other{100, 2, 7}; // of the same number, later

    // What an agent starts for a single hook is no agent.
    agents.told("a", {200, 1, 7});
    agents.told("a", {201, 1, 7});
    EXPECT_EQ(processes.watched(), 0U);

    agents.told("a", agent);
    agents.told("b", agent);
    agents.told("c", other);
    agents.told("c", other);
    EXPECT_EQ(processes.watched(), 2U);
    agents.told("b", other);
    processes.end(agent);
    EXPECT_EQ(ended, QStringList{"a"});
    agents.forget("c");
    processes.end(other);
    EXPECT_EQ(ended, (QStringList{"a", "b"}));
    EXPECT_EQ(processes.watched(), 0U);
}

} // namespace
} // namespace morvane
