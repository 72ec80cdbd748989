#include "Core/Adapters/AgentReleases.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Adapters/ProgramReleases.h"
#include "Core/Agents/AgentAdapter.h"
#include "Support/ManualScheduler.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <nlohmann/json.hpp>

namespace morvane {
namespace {

using enum AgentKind;
using nlohmann::json;
using Release = std::optional<AgentRelease>;

QString text(const Release &release) {
    return release ? QString::asprintf("%d.%d.%d", release->major, release->minor, release->patch)
                   : "none";
}

QByteArray package(const char *name, const char *version) {
    return QByteArray(R"({"name":")") + name + R"(","version":")" + version + "\"}";
}

TEST(AgentReleases, HaveTheFormThatTheyAreListedWith) {
    for (const auto &listed : AgentReleases::all()) {
        const AgentAdapter &adapter = AgentRegistry::adapter(listed.agent, listed.from);
        EXPECT_TRUE(adapter.contract() == listed.contract);
        EXPECT_TRUE(AgentReleases::program(listed.agent));
        const AgentAdapter &base = AgentRegistry::adapter(listed.agent);
        const AgentRelease next{listed.from.major + 1};
        for (const Release &other : {Release(), Release(next), Release({0, 0, 1})}) {
            EXPECT_EQ(&AgentRegistry::adapter(listed.agent, other), &base);
        }
    }
}

TEST(AgentReleases, TakeAnAlwaysAsAChangeOfRules) {
    using Scope = AgentDecision::Scope;
    const AgentAdapter &adapter = AgentRegistry::adapter(claude, Release({2, 1, 400}));
    for (const auto &[scope, destination] :
         {std::pair(Scope::session, "session"), {Scope::permanent, "localSettings"}}) {
        const auto answer = adapter.encodeDecision(AgentDecision::allowRemembering(scope), "Bash",
                                                   {}, "PermissionRequest");
        ASSERT_TRUE(answer);
        EXPECT_EQ(json::parse(answer->toStdString())["hookSpecificOutput"]["decision"],
                  json::parse(R"({"behavior":"allow","updatedPermissions":[{"type":"addRules",
                      "rules":[{"toolName":"Bash"}],"behavior":"allow","destination":")" +
                              std::string(destination) + "\"}]}"));
    }
}

TEST(AgentReleases, TakeAPlanBackAsItIsSpelled) {
    const auto answer = [](const Release &release, const char *tool, const char *body) {
        return AgentRegistry::adapter(claude, release)
            .encodeDecision(AgentDecision::allow(), tool, body, "P")
            .value_or("none");
    };
    const Release listed({2, 1, 332});
    const QByteArray bare = answer(listed, "Bash", R"({"tool_input":{"a":1}})");
    EXPECT_FALSE(bare.contains("updatedInput"));
    for (const char *plan : {"{}", R"({"plan":"1. \ud83d","n":1.0})"}) {
        const QByteArray body = QByteArray(R"({"tool_input": )") + plan + " }";
        const QByteArray taken = QByteArray(R"("allow","updatedInput":)") + plan + '}';
        EXPECT_TRUE(answer(listed, "ExitPlanMode", body).contains(taken)) << plan;
        EXPECT_EQ(answer({}, "ExitPlanMode", body), bare);
    }
    EXPECT_EQ(answer(listed, "ExitPlanMode", "{}"), "none");
}

TEST(AgentReleases, TellWhoElseAsks) {
    const auto meaning = [](const Release &release, const char *type) {
        return AgentRegistry::adapter(claude, release).canonical("Notification", type);
    };
    const Release listed({2, 1, 332});
    EXPECT_EQ(meaning(listed, "elicitation_dialog"), CanonicalEvent::needsInput);
    EXPECT_EQ(meaning(listed, "elicitation_response"), std::nullopt);
    EXPECT_EQ(meaning({}, "elicitation_dialog"), std::nullopt);
}

TEST(ProgramReleases, AreToldByThePackageOrThePath) {
    const TemporaryHome home;
    home.write("npm/@anthropic-ai/claude-code/package.json",
               package("@anthropic-ai/claude-code", "2.1.332"));
    home.write("npm/@openai/codex-linux-x64/package.json",
               package("@openai/codex", "0.169.0-linux-x64"));
    home.write("npm/@factory/cli-linux-x64/package.json",
               package("@factory/cli-linux-x64", "0.225.2"));
    home.write("npm/other/package.json", package("@openai/codexer", "9.9.9"));
    const std::tuple<AgentKind, const char *, const char *> cases[] = {
        {claude, "npm/@anthropic-ai/claude-code/bin/claude.exe", "2.1.332"},
        {codex, "npm/@openai/codex-linux-x64/vendor/x86_64-linux-musl/bin/codex", "0.169.0"},
        {codex, ".codex/releases/0.169.0-x86_64-unknown-linux-musl/bin/codex", "0.169.0"},
        {factory, "npm/@factory/cli-linux-x64/bin/droid", "0.225.2"},
        {codex, "npm/@openai/codex-linux-x64/1/2/3/4/5/codex", "0.169.0"},
        {codex, "npm/other/codex", "none"},
        {codex, ".asdf/installs/nodejs/0.200.1/bin/node", "none"},
        {codex, "1.99999999999.3/codex", "none"}};
    ProgramReleases releases;
    for (const auto &[kind, file, expected] : cases) {
        EXPECT_EQ(text(releases.of(kind, home.write(file))), expected) << file;
    }
    ASSERT_TRUE(QFile::link(home.path("npm/@anthropic-ai/claude-code/bin/claude.exe"),
                            home.path("claude")));
    EXPECT_EQ(text(releases.of(claude, home.path("claude"))), "2.1.332");
    for (const QString &other : {QString(), QStringLiteral("claude"), home.path("nowhere")}) {
        EXPECT_EQ(text(releases.of(claude, other)), "none");
    }
}

TEST(ProgramReleases, AreThoseThatRunningProgramsOnceWere) {
    const TemporaryHome home;
    const QString program = home.write("cli/cli.js");
    const QString update = home.write("later/codex/1.2.3/codex");
    const ProcessIdentity process{.id = 12, .startedAt = 34, .pidNamespace = 56};
    const ProcessIdentity later{.id = 12, .startedAt = 35, .pidNamespace = 56};
    const auto put = [&](const char *version) {
        home.write("cli/package.json", package("@openai/codex", version));
    };
    ManualScheduler clock;
    ProgramReleases releases;
    const auto of = [&](AgentKind agent, const QString &file, const ProcessIdentity &which) {
        return text(releases.of(agent, file, which, clock));
    };
    EXPECT_EQ(of(codex, program, process), "none");
    put("0.169.0"); // while it is being installed
    clock.advance(Seconds(59));
    EXPECT_EQ(of(codex, program, process), "none") << "a look may take long";
    clock.setClock(Seconds(-3600));
    EXPECT_EQ(of(codex, program, process), "0.169.0") << "a clock that was set back";
    put("0.171.0");
    home.writeEarlier("cli/cli.js", "new"); // with another time stamp, however fast this runs
    EXPECT_EQ(of(codex, program, process), "0.169.0");
    EXPECT_EQ(of(codex, "", process), "0.169.0");
    EXPECT_EQ(of(claude, program, process), "none");
    EXPECT_EQ(of(codex, program, later), "0.171.0");
    QFile::remove(program);
    EXPECT_EQ(of(codex, program, process), "0.169.0");
    EXPECT_EQ(of(codex, update, process), "1.2.3");
    for (int id = 100; id < 200; ++id) {
        of(codex, program, {.id = id, .startedAt = 1, .pidNamespace = 56});
        EXPECT_EQ(of(codex, "", process), "1.2.3");
    }
    EXPECT_EQ(of(codex, program, later), "none");
}

TEST(ProgramReleases, AreReadBelowTheRootOfTheProcess) {
    const TemporaryHome home;
    const QString here = home.write("here/codex/0.170.0/codex");
    QString found = home.write("inside/codex/0.171.0/codex");
    ProgramReleases releases([&](const ProcessIdentity &, const QString &) { return found; });
    const auto of = [&](std::int64_t process) {
        return text(releases.of(codex, here, {.id = process}, ManualScheduler()));
    };
    EXPECT_EQ(of(1), "0.171.0");
    found.clear();
    EXPECT_EQ(of(2), "none") << "the file here may be another";
}

TEST(ProgramReleases, AreFoundWhereAShellWouldFindThem) {
    TemporaryHome home;
    home.set("PATH", home.path("shims") + "::relative:" + home.path("first"));
    ProgramReleases releases;
    EXPECT_EQ(text(releases.installed(qwen)), "none");
    const auto put = [&](const char *folder, const char *version) {
        home.write(QLatin1String(folder) + QLatin1String("/package.json"),
                   package("@qwen-code/qwen-code", version));
    };
    // Each new place comes earlier in the search order.
    put(".volta/tools/image/packages/@qwen-code/qwen-code/lib/node_modules/@qwen-code/qwen-code",
        "0.24.4");
    EXPECT_EQ(text(releases.installed(qwen)), "0.24.4");
    put(".nvm/versions/node/v22.1.0/lib/node_modules/qwen", "0.24.5");
    QDir().mkpath(home.path(".nvm/versions/node/v22.1.0/bin"));
    home.write(".nvm/versions/node/v22.1.0/lib/node_modules/qwen/cli.js");
    ASSERT_TRUE(QFile::link("../lib/node_modules/qwen/cli.js",
                            home.path(".nvm/versions/node/v22.1.0/bin/qwen")));
    EXPECT_EQ(text(releases.installed(qwen)), "0.24.5");
    put("first", "0.24.6");
    home.write("first/qwen");
    EXPECT_EQ(text(releases.installed(qwen)), "0.24.6");
    home.write("shims/qwen", "#!/bin/sh\nexec somewhere\n");
    EXPECT_EQ(text(releases.installed(qwen)), "0.24.6");
}

} // namespace
} // namespace morvane
