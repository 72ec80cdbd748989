#include "Presentation/Panel/SessionMetaLine.h"

#include "Core/Sessions/Session.h"
#include "Presentation/Panel/ContextBadge.h"
#include "Presentation/Panel/PermissionModeBadge.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

TEST(SessionMetaLine, TellsInWordsWhatItsBadgesShow) {
    SessionMetaLine line(nullptr);
    Session session;
    session.agent = AgentKind::claude;
    line.setSession(session);
    EXPECT_TRUE(line.isHidden());

    session.hostAppName = "kitty";
    session.gitBranch = "main";
    session.permissionMode = "plan";
    session.contextTokens = 185'000;
    line.setSession(session);
    EXPECT_FALSE(line.isHidden());
    QStringList names;
    for (const Badge *badge : line.findChildren<Badge *>()) {
        names.append(badge->accessibleName());
    }
    EXPECT_EQ(names,
              QStringList({"in kitty", "branch main", "permission mode plan", "context 185k"}));
    EXPECT_EQ(line.findChild<ContextBadge *>()->accessibleDescription(),
              "185000 tokens of context — close to a standard 200k window; a compaction is likely "
              "soon.");

    session.permissionMode = "default";
    session.contextTokens.reset();
    line.setSession(session);
    EXPECT_TRUE(line.findChild<PermissionModeBadge *>()->isHidden());
    EXPECT_TRUE(line.findChild<ContextBadge *>()->isHidden());
    EXPECT_FALSE(line.isHidden());
}

} // namespace
} // namespace morvane
