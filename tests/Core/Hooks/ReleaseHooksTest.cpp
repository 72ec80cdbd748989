#include "Core/Hooks/InstallerFixture.h"

namespace morvane {
namespace {

using enum AgentKind;

class ReleaseHooksTest : public InstallerFixture {
protected:
    /// The installer for the newest release that is listed.
    std::unique_ptr<HookInstaller> listed(AgentKind kind) const {
        return HookInstaller::make(*AgentRegistry::forms(kind).back(), settings, 40123, [] {});
    }
};

TEST_F(ReleaseHooksTest, WantTheEntriesOfTheirOwnForm) {
    for (const AgentKind kind : {gemini, codex, qwen}) {
        connect(kind);
        EXPECT_TRUE(listed(kind)->hasStaleEntries());
        listed(kind)->renew();
        EXPECT_FALSE(listed(kind)->hasStaleEntries());
        EXPECT_TRUE(installer(kind)->hasStaleEntries()) << "the older release is back";
    }
    EXPECT_EQ(root(gemini)["hooks"]["AfterAgent"], value(R"([{"hooks":[{"type":"command",
        "command":"OURS/hook.sh gemini AfterAgent","timeout":5000}]}])"));
    EXPECT_EQ(root(codex)["hooks"]["Interrupt"], value(R"([{"hooks":[{"type":"command",
        "command":"OURS/hook.sh codex Interrupt","async":true,"timeout":5}]}])"));
    EXPECT_FALSE(root(qwen)["hooks"].contains("BeforeAgent"));
    EXPECT_EQ(root(qwen)["hooks"]["PermissionRequest"], value(R"([{"matcher":"*","hooks":[{
        "type":"command","command":"OURS/hook.sh qwen PermissionRequest decide","timeout":120}]}])"));

    // A timeout that a person has set isn't taken for another release's.
    json changed = root(gemini);
    changed["hooks"]["AfterAgent"][0]["hooks"][0]["timeout"] = 9000;
    write(gemini, LenientJson::write(changed));
    EXPECT_FALSE(listed(gemini)->hasStaleEntries());
}

TEST_F(ReleaseHooksTest, LeaveWhatHasBeenReviewed) {
    connect(codex);
    json hooks = root(codex);
    for (const char *event : {"Stop", "SessionEnd"}) {
        hooks["hooks"][event].push_back({{"hooks", {{{"command", "bell"}}}}});
    }
    hooks["hooks"]["Stop"].push_back(hooks["hooks"]["Stop"][0]);
    write(codex, LenientJson::write(hooks));
    EXPECT_EQ(failure(listed(codex)->install()), "");
    hooks["hooks"]["Stop"].erase(2);
    hooks["hooks"]["SessionEnd"][0] = value(R"({"hooks":[{"type":"command",
        "command":"OURS/hook.sh codex SessionEnd","timeout":3}]})");
    hooks["hooks"]["Interrupt"] = root(codex)["hooks"]["Interrupt"];
    EXPECT_EQ(root(codex), hooks);

    EXPECT_TRUE(listed(codex)->health().awaitsReview);
    EXPECT_FALSE(installer(codex)->health().awaitsReview);
    home.write(".codex/config.toml", "model = 'x'\n");
    EXPECT_TRUE(listed(codex)->health().awaitsReview);
    const QString path = home.path(".codex/hooks.json");
    const auto review = [&](int age) {
        const QString config = ".codex/config.toml";
        home.write(config, "[hooks.state.\"" + path.toUtf8() + ":stop:0:0\"]\n");
        home.setWritten(config, QFileInfo(path).lastModified().addSecs(-age));
    };
    review(-1);
    EXPECT_FALSE(listed(codex)->health().awaitsReview);
    review(1);
    EXPECT_TRUE(listed(codex)->health().awaitsReview);
    EXPECT_EQ(listed(codex)->health().issues(), QStringList());

    // The file is newer, but holds nothing new to review.
    const auto rewrittenAfter = [&](int seconds) {
        write(codex, text(codex));
        home.setWritten(place(codex), QDateTime::currentDateTime().addSecs(seconds));
    };
    rewrittenAfter(0);
    review(0);
    rewrittenAfter(100);
    EXPECT_FALSE(listed(codex)->health().awaitsReview);
    EXPECT_EQ(failure(listed(codex)->install()), "");
    EXPECT_FALSE(listed(codex)->health().awaitsReview);
    defaults.remove("hooksChanged");
    EXPECT_TRUE(listed(codex)->health().awaitsReview);
}

} // namespace
} // namespace morvane
