#include "Core/Hooks/AgentSettingsFile.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace morvane {
namespace {

class AgentSettingsFileTest : public testing::Test {
protected:
    using Edited = Result<std::optional<AgentSettingsChange>>;

    static AgentSettingsFile::Edit append(const QByteArray &text) {
        return [text](const auto &content) -> Edited {
            return AgentSettingsChange{.content = content.value_or(QByteArray()) + text};
        };
    }
    /// One that comes to the same whatever there was.
    static AgentSettingsFile::Edit fixed(const Edited &edited) {
        return [edited](const auto &) { return edited; };
    }
    QByteArray backup() const { return home.read(name + ".morvane-backup"); }

    std::string failure(const AgentSettingsFile &file, const AgentSettingsFile::Edit &edit) const {
        const auto failure = file.rewrite(edit);
        QString message = failure ? failure->message : QString();
        return message.replace(home.path(), "~").toStdString();
    }

    QStringList names(const QString &folder) const {
        return QDir(home.path(folder)).entryList(QDir::Files | QDir::System | QDir::Hidden);
    }

    mode_t mode(const QString &path) const {
        struct stat status {};
        ::stat(home.path(path).toUtf8().constData(), &status);
        return status.st_mode & 07777;
    }

    TemporaryHome home;
    const QString name = "agent/settings.json";
    const AgentSettingsFile file{home.path(name)};
};

TEST_F(AgentSettingsFileTest, MakesTheFileAndKeepsTheLastContentAsTheBackupWhereAsked) {
    EXPECT_EQ(failure(file, append("1")), "");
    EXPECT_EQ(file.read(), "1");
    EXPECT_EQ(names("agent"), QStringList{"settings.json"});
    chmod(home.path(name).toUtf8(), 0640);
    EXPECT_EQ(failure(file, append("2")), "");
    EXPECT_EQ(backup(), "1");
    EXPECT_EQ(failure(file, append("3")), "");
    EXPECT_EQ(backup(), "12");
    EXPECT_EQ(failure(file, fixed(AgentSettingsChange{.content = "4", .backsUp = false})), "");
    EXPECT_EQ(backup(), "12");
    EXPECT_EQ(file.read(), "4");
    EXPECT_EQ(mode("agent/settings.json"), 0640u);
    EXPECT_EQ(mode("agent/settings.json.morvane-backup"), 0640u);
    EXPECT_EQ(failure(file, fixed(std::optional<AgentSettingsChange>())), "");
    EXPECT_EQ(names("agent").size(), 2);
}

TEST_F(AgentSettingsFileTest, WritesThroughSymbolicLinks) {
    home.write("dotfiles/agent.json", "1");
    QDir().mkpath(home.path("agent"));
    const QString link = home.path(name);
    const QString between = home.path("dotfiles/link");
    ASSERT_TRUE(QFile::link("agent.json", between));
    ASSERT_TRUE(QFile::link("../dotfiles/link", link));
    EXPECT_EQ(failure(file, append("2")), "");
    EXPECT_TRUE(QFileInfo(link).isSymbolicLink() && QFileInfo(between).isSymbolicLink());
    EXPECT_EQ(home.read("dotfiles/agent.json"), "12");
    EXPECT_EQ(backup(), "1");

    // ".." is that of the folder that the link really lies in.
    ASSERT_TRUE(QFile::link("dotfiles/deep", home.path("other")));
    QDir().mkpath(home.path("dotfiles/deep"));
    ASSERT_TRUE(QFile::link("../agent.json", home.path("dotfiles/deep/settings.json")));
    home.write("agent.json", "another");
    EXPECT_EQ(failure(AgentSettingsFile(home.path("other/settings.json")), append("!")), "");
    EXPECT_EQ(home.read("dotfiles/agent.json"), "12!");
    EXPECT_EQ(home.read("agent.json"), "another");

    QFile::remove(home.path("dotfiles/agent.json"));
    EXPECT_EQ(failure(file, append("3")), "");
    EXPECT_EQ(home.read("dotfiles/agent.json"), "3");
}

TEST_F(AgentSettingsFileTest, LeavesAloneWhatItMayNotOrCannotHandle) {
    const QString path = home.write(name, "1");
    chmod(path.toUtf8(), 0444);
    EXPECT_EQ(failure(file, append("2")), "~/agent/settings.json could not be written: it is "
                                          "read-only");
    EXPECT_EQ(file.read(), "1");
    EXPECT_EQ(names("agent").size(), 1);

    QFile::remove(path);
    QDir().mkpath(path);
    EXPECT_EQ(failure(file, append("2")),
              "~/agent/settings.json could not be read: Invalid argument");
    QDir().rmdir(path);
    // To open it would wait for a writer that never comes.
    ASSERT_EQ(mkfifo(path.toUtf8(), 0600), 0);
    EXPECT_EQ(file.read(), std::nullopt);
    EXPECT_NE(failure(file, append("2")), "");
}

TEST_F(AgentSettingsFileTest, StopsBeforeAnyChangeWithoutABackup) {
    home.write(name, "1");
    QDir().mkpath(home.path("agent/settings.json.morvane-backup"));
    EXPECT_EQ(failure(file, append("2")).find("~/agent/settings.json could not be backed up: "),
              0u);
    EXPECT_EQ(file.read(), "1");
    EXPECT_EQ(names("agent").size(), 1);
}

TEST_F(AgentSettingsFileTest, EditsAgainWhatTheAgentChangedMeanwhile) {
    home.write(name, "1");
    int edits = 0;
    const auto overtaken = [&](int times) {
        return [&, times](const std::optional<QByteArray> &content) -> Edited {
            if (++edits <= times) {
                home.write(name, *content + "a");
            }
            return append("b")(content);
        };
    };
    EXPECT_EQ(failure(file, overtaken(2)), "");
    EXPECT_EQ(edits, 3);
    EXPECT_EQ(file.read(), "1aab");
    EXPECT_EQ(backup(), "1aa");

    edits = 0;
    EXPECT_EQ(failure(file, overtaken(100)),
              "~/agent/settings.json could not be written: another program keeps changing it");
    EXPECT_EQ(edits, 3);
    EXPECT_EQ(file.read(), "1aabaaa");
    EXPECT_EQ(names("agent").size(), 2);
}

TEST_F(AgentSettingsFileTest, EditsAgainAFileThatComesOrGoesMeanwhile) {
    EXPECT_EQ(failure(file,
                      [this](const auto &content) {
                          if (!content) {
                              home.write(name, "theirs ");
                          }
                          return append("ours")(content);
                      }),
              "");
    EXPECT_EQ(file.read(), "theirs ours");

    EXPECT_EQ(failure(file,
                      [this](const auto &content) {
                          QFile::remove(home.path(name));
                          return append("new")(content);
                      }),
              "");
    EXPECT_EQ(file.read(), "new");
}

TEST_F(AgentSettingsFileTest, KeepsWhatCouldNotBeUnderstood) {
    home.write(name, "broken");
    const AgentSettingsChange replacing{.content = "new", .replacesUnreadable = true};
    EXPECT_EQ(failure(file, fixed(replacing)), "");
    EXPECT_EQ(failure(file, append("er")), "");
    EXPECT_EQ(backup(), "new");
    EXPECT_EQ(home.read(name + ".morvane-unreadable"), "broken");
    EXPECT_EQ(failure(file, fixed(Failure{"no"})), "no");
    EXPECT_EQ(file.read(), "newer");
}

} // namespace
} // namespace morvane
