#include "Core/Sessions/Session.h"

#include "Support/Printing.h"

namespace morvane {
namespace {

using Text = std::optional<QString>;

TEST(Session, IsNamedAfterItsFolderUnlessAPersonNamedIt) {
    const std::tuple<Text, QString, QString> cases[] = {{{}, "", "session"},
                                                        {"Mine", "/home/ada/project", "Mine"},
                                                        {"", "/home/ada/project", "project"},
                                                        {{}, "/home/ada/project/", "project"},
                                                        {{}, "//", "/"}};
    for (const auto &[customName, cwd, name] : cases) {
        Session session;
        session.customName = customName;
        session.cwd = cwd;
        session.aiTitle = session.lastPrompt = "Not the name";
        EXPECT_EQ(session.displayName(), name);
    }
}

TEST(Session, SumsUpItsContext) {
    using enum ContextPressure;
    const std::tuple<int, QString, ContextPressure> cases[] = {
        {999, "999", comfortable},  {1999, "1k", comfortable}, {139'999, "139k", comfortable},
        {140'000, "140k", filling}, {180'000, "180k", tight},  {200'000, "200k", large}};
    Session session;
    EXPECT_EQ(session.contextLabel(), std::nullopt);
    EXPECT_EQ(session.contextPressure(), std::nullopt);
    for (const auto &[tokens, label, pressure] : cases) {
        session.contextTokens = tokens;
        EXPECT_EQ(session.contextLabel(), label);
        EXPECT_EQ(session.contextPressure(), pressure) << tokens;
    }
}

TEST(Session, RemarksOnlyOnUnusualPermissionModes) {
    using enum AgentKind;
    const std::tuple<AgentKind, Text, bool> cases[] = {
        {claude, {}, false},          {claude, "default", false},   {claude, "plan", true},
        {claude, "on-request", true}, {codex, "on-request", false}, {codex, "default", true}};
    for (const auto &[agent, mode, notable] : cases) {
        Session session;
        session.agent = agent;
        session.permissionMode = mode;
        EXPECT_EQ(session.notablePermissionMode(), notable ? mode : std::nullopt);
    }
}

} // namespace
} // namespace morvane
