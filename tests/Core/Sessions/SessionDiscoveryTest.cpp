#include "Core/Sessions/SessionDiscovery.h"

#include "Support/FakeProcesses.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"

#include <filesystem>

namespace morvane {
namespace {

constexpr Date now{std::chrono::seconds(1'700'000'000)};
constexpr Seconds maxAge(600);

class DiscoveryTest : public testing::Test {
protected:
    /// A transcript that was written so many seconds ago.
    QString write(const QString &path, const QByteArray &text, double age = 60) const {
        const QString file = home.write(path, text);
        const auto written = std::chrono::file_clock::from_sys(now - Seconds(age));
        std::filesystem::last_write_time(file.toStdString(), written);
        return file;
    }

    static QByteArray meta(const QByteArray &payload) {
        return R"({"type":"session_meta","payload":)" + payload + "}\n";
    }

    static QList<DiscoveredSession> scan(const Processes &processes = NullProcesses()) {
        return SessionDiscovery::scan(maxAge, now, processes);
    }

    /// Id and working directory of each session that is found.
    static QStringList found(const Processes &processes = NullProcesses()) {
        QStringList result;
        for (const DiscoveredSession &session : scan(processes)) {
            result.append(session.id + " " + session.cwd);
        }
        result.sort();
        return result;
    }

    TemporaryHome home;
};

TEST_F(DiscoveryTest, FindsWhatClaudeCodeAndCodexHaveWritten) {
    const auto writeCopy = [this](const QString &path, const char *name, double age) {
        QFile original(QStringLiteral(TEST_DATA "/") + QLatin1String(name));
        EXPECT_TRUE(original.open(QIODevice::ReadOnly));
        return write(path, original.readAll(), age);
    };
    EXPECT_TRUE(scan().isEmpty());
    const QString id = "00000000-0000-7000-8000-000000000001";
    const QString folder = "/home/ada/workshop";
    const QString codex = writeCopy(".codex/sessions/2026/01/01/r-1.jsonl", "codex.jsonl", 0.5);
    // Without a folder of Claude Code's there are still Codex's sessions.
    EXPECT_EQ(found(), QStringList{id + " " + folder});
    const QString claude = writeCopy(".claude/projects/-p/s.1.jsonl", "claude.jsonl", -5);
    EXPECT_EQ(scan(), (QList<DiscoveredSession>{
                          {"s.1", AgentKind::claude, folder, claude, now + Seconds(5)},
                          {id, AgentKind::codex, folder, codex, now - Seconds(0.5)}}));
}

TEST_F(DiscoveryTest, LeavesOutWhatASubagentHasWritten) {
    const auto put = [this](const char *name, const QByteArray &version, const QByteArray &root) {
        write(QLatin1String(".codex/sessions/") + QLatin1String(name),
              meta(R"({"id":")" + QByteArray(name) + R"(","session_id":")" + root +
                   R"(","cwd":"/p","cli_version":")" + version + "\"}"));
    };
    put("root.jsonl", "0.169.0", "root.jsonl");
    put("child.jsonl", "0.169.0", "root.jsonl");
    put("other.jsonl", "0.1.0", "root.jsonl");
    EXPECT_EQ(found(), (QStringList{"other.jsonl /p", "root.jsonl /p"}));
}

TEST_F(DiscoveryTest, LooksOnlyForTranscriptsInTheirPlaces) {
    const QByteArray line = "{\"cwd\":\"/p\"}\n";
    for (const char *path :
         {"a.jsonl", "p/b.json", "p/.jsonl", "p/q/e.jsonl", "p/f.jsonl", ".hidden/g.jsonl"}) {
        write(QLatin1String(".claude/projects/") + path, line);
    }
    home.write(".claude/projects/p/folder.jsonl/h.jsonl", line);
    ASSERT_TRUE(QFile::link(home.path("nowhere"), home.path(".claude/projects/p/gone.jsonl")));
    const QByteArray codex = meta(R"({"id":"i","cwd":"/q"})");
    for (const char *path : {".hidden.jsonl", ".hidden/a.jsonl", "b.json", "1/2/3/4/5/c.jsonl"}) {
        write(QLatin1String(".codex/sessions/") + path, codex);
    }
    home.write(".codex/sessions/folder.jsonl/d.jsonl");
    write("elsewhere/e.jsonl", codex);
    ASSERT_TRUE(QFile::link(home.path("elsewhere"), home.path(".codex/sessions/linked")));
    EXPECT_EQ(found(), (QStringList{"f /p", "g /p", "i /q"}));
}

TEST_F(DiscoveryTest, LeavesWhatIsOldUnread) {
    write(".claude/projects/p/old.jsonl", "{}", 600);
    write(".claude/projects/p/recent.jsonl", "{}", 599.999);
    EXPECT_EQ(found(), QStringList{"recent "});
}

TEST_F(DiscoveryTest, ReadsTheBeginningOfATranscript) {
    const auto lines = [](qsizetype size) { return QByteArray("{}\n").repeated(size / 3); };
    const QByteArray cwd = "{\"cwd\":\"/p\"}\n";
    write(".claude/projects/p/near.jsonl", lines(65'000) + cwd + lines(1'000'000));
    write(".claude/projects/p/far.jsonl", lines(66'000) + cwd);
    write(".claude/projects/p/first.jsonl",
          "\n{\"cwd\":7}\n{\"cwd\":\"\"}\n[]\nnonsense\n" + cwd + "{\"cwd\":\"/q\"}\n");
    write(".claude/projects/p/binary.jsonl", cwd + "\xff");
    const QByteArray cutInCharacter = cwd + QByteArray(65'535 - cwd.size(), ' ') + "ä";
    write(".claude/projects/p/cut.jsonl", cutInCharacter);
    EXPECT_EQ(found(), (QStringList{"binary ", "cut /p", "far ", "first /p", "near /p"}));
}

TEST_F(DiscoveryTest, TakesACodexSessionOnlyWithItsId) {
    const QByteArray payloads =
        R"({"id":"both","session_id":"no","cwd":"/1"}|{"session_id":"second","cwd":"/2"}|)"
        R"({"id":"without a folder","cwd":""}|{"id":7,"session_id":"no id","cwd":"/3"}|)"
        R"({"id":"","session_id":"no","cwd":"/4"}|{"id":"no"}|{"cwd":"/5"}|[])";
    int file = 0;
    for (const QByteArray &payload : payloads.split('|')) {
        write(QStringLiteral(".codex/sessions/%1.jsonl").arg(++file),
              "{\"type\":\"turn_context\",\"payload\":{\"id\":\"no\",\"cwd\":\"/no\"}}\n" +
                  meta(payload));
    }
    write(".codex/sessions/later.jsonl",
          meta(R"({"id":""})") + meta(R"({"id":"later","cwd":"/6"})"));
    EXPECT_EQ(found(),
              (QStringList{"both /1", "later /6", "no id /3", "second /2", "without a folder "}));
}

TEST_F(DiscoveryTest, BringsBackNoMoreSessionsOfAFolderThanAgentsRunThere) {
    const auto session = [this](const char *name, const QByteArray &cwd, double age) {
        write(QStringLiteral(".claude/projects/-p/%1.jsonl").arg(QLatin1String(name)),
              "{\"cwd\":\"" + cwd + "\"}\n", age);
    };
    session("old", "/srv/a", 300);
    session("new", "/srv/a", 20);
    session("dead", "/srv/b", 10);
    const QString folder = home.path("real");
    QDir().mkpath(folder);
    ASSERT_TRUE(QFile::link(folder, home.path("link")));
    session("linked", QFile::encodeName(home.path("link")), 30);
    session("untold", "", 5);
    session("untold and late", "", 400);
    FakeProcesses processes;
    processes.folders["claude"] = {QFileInfo(folder).canonicalFilePath(), "/srv/a", "/srv/c"};
    const QStringList known{"linked " + home.path("link"), "new /srv/a"};
    EXPECT_EQ(found(processes), known + QStringList({"untold ", "untold and late "}));
    processes.folders["claude"].removeLast();
    EXPECT_EQ(found(processes), known + QStringList{"untold "});
}

} // namespace
} // namespace morvane
