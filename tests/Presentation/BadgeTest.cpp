#include "Core/Session.h"
#include "Presentation/Colors.h"
#include "Presentation/ContextBadge.h"
#include "Presentation/PermissionModeBadge.h"
#include "Support/Printing.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

TEST(Badges, TellHowFreelyASessionRuns) {
    const QColor red = Colors::sRgb(1.0, 0.45, 0.45);
    const QColor amber = Colors::sRgb(1.0, 0.75, 0.42);
    const QColor blue = Colors::sRgb(0.55, 0.75, 1.0);
    struct Case {
        const char *mode;
        const char *label;
        QColor tint;
        const char *help;
    };
    const Case cases[] = {
        {"bypassPermissions", "bypass", red,
         "Bypass permissions — this session never stops to ask."},
        {"never", "never", red, "Never asks — this session runs every command without approval."},
        {"acceptEdits", "edits", amber, "Accept edits — file changes apply without asking."},
        {"auto", "auto", amber, "Auto — routine tool calls run without asking."},
        {"on-failure", "on-fail", amber,
         "On failure — commands run sandboxed and only ask if that fails."},
        {"plan", "plan", blue, "Plan mode — this session won't change anything."},
        {"untrusted", "untrusted", blue,
         "Untrusted — everything outside the trusted list needs approval."},
        {"<b>odd</b>", "<b>odd</b>", blue, "Permission mode: <b>odd</b>"},
    };
    PermissionModeBadge badge(nullptr);
    for (const Case &c : cases) {
        badge.setMode(QString::fromUtf8(c.mode));
        EXPECT_EQ(badge.text(), QString::fromUtf8(c.label));
        EXPECT_EQ(badge.tint(), c.tint) << c.mode;
        EXPECT_EQ(badge.accessibleDescription(), QString::fromUtf8(c.help));
        EXPECT_FALSE(badge.toolTip().contains(QStringLiteral("<b>"))) << c.mode;
    }
    badge.setMode(std::nullopt);
    EXPECT_TRUE(badge.isHidden());
}

TEST(Badges, WarnAsTheContextFillsUp) {
    struct Case {
        int tokens;
        const char *label;
        QColor tint;
    };
    const QColor calm = Colors::white(0.45);
    ContextBadge badge(nullptr);
    for (const Case &c :
         {Case{999, "999", calm}, Case{140'000, "140k", Colors::sRgb(1.0, 0.78, 0.45)},
          Case{180'000, "180k", Colors::sRgb(1.0, 0.5, 0.45)}, Case{200'000, "200k", calm}}) {
        Session session;
        session.contextTokens = c.tokens;
        badge.setSession(session);
        EXPECT_EQ(badge.text(), QString::fromUtf8(c.label));
        EXPECT_EQ(badge.tint(), c.tint) << c.tokens;
        EXPECT_TRUE(badge.accessibleDescription().startsWith(QString::number(c.tokens)));
    }
    badge.setSession(Session());
    EXPECT_TRUE(badge.isHidden());
}

} // namespace
} // namespace morvane
