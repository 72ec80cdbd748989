#include "Core/Hooks/AgentSettingsFile.h"

#include "Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <sys/xattr.h>

namespace morvane {
namespace {

class AgentSettingsFileTest : public testing::Test {
protected:
    using Edit = AgentSettingsFile::Edit;
    using Edited = Result<std::optional<AgentSettingsChange>>;
    using Origin = AgentSettingsChange::Origin;

    static Edit append(const QByteArray &text) {
        return [text](const auto &content) -> Edited {
            return AgentSettingsChange{.content = content.value_or(QByteArray()) + text};
        };
    }
    /// An edit with the same result, whatever the file held.
    static Edit fixed(const Edited &edited) {
        return [edited](const auto &) { return edited; };
    }
    QByteArray backup() const { return home.read(name + ".morvane-backup"); }

    std::string failure(const Edit &edit) const {
        const auto written = file.rewrite(edit);
        QString message = written ? QString() : written.error().message;
        return message.replace(home.path(), "~").toStdString();
    }
    void rewrite(const Edit &edit) const { EXPECT_EQ(failure(edit), ""); }

    /// What lies in the agent's folder.
    QStringList names() const {
        return QDir(home.path("agent")).entryList(QDir::Files | QDir::System | QDir::Hidden);
    }

    TemporaryHome home;
    const QString name = "agent/settings.json";
    const AgentSettingsFile file{home.path(name)};
};

TEST_F(AgentSettingsFileTest, MakesTheFileAndKeepsTheLastContentAsTheBackupWhereAsked) {
    rewrite(append("1"));
    EXPECT_EQ(file.read(), "1");
    EXPECT_EQ(names(), QStringList{"settings.json"});
    chmod(home.path(name).toUtf8(), 0640);
    rewrite(append("2"));
    EXPECT_EQ(backup(), "1");
    rewrite(append("3"));
    EXPECT_EQ(backup(), "12");
    rewrite(fixed(AgentSettingsChange{.content = "4", .backsUp = false}));
    EXPECT_EQ(backup(), "12");
    EXPECT_EQ(file.read(), "4");
    EXPECT_EQ(home.mode("agent/settings.json"), 0640u);
    EXPECT_EQ(home.mode("agent/settings.json.morvane-backup"), 0640u);
    rewrite(fixed(std::optional<AgentSettingsChange>()));
    EXPECT_EQ(names().size(), 2);
}

TEST_F(AgentSettingsFileTest, WritesThroughSymbolicLinks) {
    home.write("dotfiles/agent.json", "1");
    QDir().mkpath(home.path("agent"));
    const QString link = home.path(name);
    const QString between = home.path("dotfiles/link");
    ASSERT_TRUE(QFile::link("agent.json", between));
    ASSERT_TRUE(QFile::link("../dotfiles/link", link));
    rewrite(append("2"));
    EXPECT_TRUE(QFileInfo(link).isSymbolicLink() && QFileInfo(between).isSymbolicLink());
    EXPECT_EQ(home.read("dotfiles/agent.json"), "12");
    EXPECT_EQ(backup(), "1");

    // ".." in a link is the parent of the folder in which the link really lies.
    ASSERT_TRUE(QFile::link("dotfiles/deep", home.path("other")));
    QDir().mkpath(home.path("dotfiles/deep"));
    ASSERT_TRUE(QFile::link("../agent.json", home.path("dotfiles/deep/settings.json")));
    home.write("agent.json", "another");
    EXPECT_TRUE(AgentSettingsFile(home.path("other/settings.json")).rewrite(append("!")));
    EXPECT_EQ(home.read("dotfiles/agent.json"), "12!");
    EXPECT_EQ(home.read("agent.json"), "another");

    QFile::remove(home.path("dotfiles/agent.json"));
    rewrite(append("3"));
    EXPECT_EQ(home.read("dotfiles/agent.json"), "3");
}

TEST_F(AgentSettingsFileTest, ReplacesALinkInThePlaceOfACopyInsteadOfFollowingIt) {
    home.write(name, "1");
    home.write("elsewhere", "theirs");
    for (const char *ending : {".morvane-backup", ".morvane-original", ".morvane-unreadable"}) {
        ASSERT_TRUE(QFile::link(home.path("elsewhere"), home.path(name + ending)));
    }
    const AgentSettingsChange first{
        .content = "2", .replacesUnreadable = true, .origin = Origin::taken};
    rewrite(fixed(first));
    EXPECT_EQ(home.read("elsewhere"), "theirs");
    for (const char *ending : {".morvane-backup", ".morvane-original", ".morvane-unreadable"}) {
        EXPECT_FALSE(QFileInfo(home.path(name + ending)).isSymbolicLink());
        EXPECT_EQ(home.read(name + ending), "1");
    }
}

/// A file that only one more user may read must not become readable for the group.
TEST_F(AgentSettingsFileTest, KeepsAccessListAndAttributes) {
    // Version 2; the owner reads and writes, the user 1234 reads, nobody else does anything.
    const std::vector<std::uint16_t> list{2,      0,      1,    6, 0xffff, 0xffff, 2,    4,
                                          1234,   0,      4,    0, 0xffff, 0xffff, 0x10, 4,
                                          0xffff, 0xffff, 0x20, 0, 0xffff, 0xffff};
    constexpr char access[] = "system.posix_acl_access";
    const auto attribute = [this](const QString &path, const char *key) {
        QByteArray value(100, '\0');
        const ssize_t size = ::getxattr(home.path(path).toUtf8().constData(), key, value.data(),
                                        static_cast<std::size_t>(value.size()));
        return value.left(std::max<ssize_t>(size, 0)).toHex();
    };
    const QByteArray path = home.write(name, "1").toUtf8();
    ::chmod(path, 0600);
    if (::setxattr(path, "user.note", "mine", 4, 0) != 0 ||
        ::setxattr(path, access, list.data(), list.size() * sizeof(list[0]), 0) != 0) {
        GTEST_SKIP() << "the file system has no such attributes";
    }
    const QByteArray before = attribute(name, access);
    const mode_t shown = home.mode(name);
    rewrite(fixed(AgentSettingsChange{.content = "2", .origin = Origin::taken}));
    for (const char *ending : {"", ".morvane-backup", ".morvane-original"}) {
        EXPECT_EQ(attribute(name + ending, access), before) << ending;
        EXPECT_EQ(attribute(name + ending, "user.note"), QByteArray("mine").toHex()) << ending;
        EXPECT_EQ(home.mode(name + ending), shown) << ending;
    }

    // The file does not inherit the folder's default access list.
    ::removexattr(path, access);
    ::chmod(path, 0640);
    const QByteArray folder = home.path("agent").toUtf8();
    ASSERT_EQ(::setxattr(folder, "system.posix_acl_default", list.data(),
                         list.size() * sizeof(list[0]), 0),
              0);
    rewrite(append("3"));
    EXPECT_EQ(attribute(name, access), "");
    EXPECT_EQ(home.mode(name), 0640u);
}

TEST_F(AgentSettingsFileTest, LeavesAloneWhatItMayNotChangeOrCannotBackUpOrHandle) {
    const QString path = home.write(name, "1");
    QDir().mkpath(path + ".morvane-backup");
    EXPECT_EQ(failure(append("2")).find("~/agent/settings.json could not be backed up: "), 0u);
    chmod(path.toUtf8(), 0444);
    EXPECT_EQ(failure(append("2")), "~/agent/settings.json could not be written: it is read-only");
    EXPECT_EQ(file.read(), "1");
    EXPECT_EQ(names().size(), 1);
    QFile::remove(path);
    QDir().mkpath(path);
    EXPECT_EQ(failure(append("2")), "~/agent/settings.json could not be read: Invalid argument");
    QDir().rmdir(path);
    QDir().rmdir(path + ".morvane-backup");
    // Opening a FIFO would wait for a writer that never comes.
    ASSERT_EQ(mkfifo(path.toUtf8(), 0600), 0);
    EXPECT_EQ(file.read(), std::nullopt);
    EXPECT_NE(failure(append("2")), "");
}

TEST_F(AgentSettingsFileTest, EditsAgainWhatTheAgentHasMeanwhileWrittenOrRemoved) {
    int edits = 0;
    const auto overtaken = [&](int times) {
        return [&, times](const std::optional<QByteArray> &content) -> Edited {
            if (++edits <= times) {
                home.write(name, content.value_or(QByteArray()) + "a");
            }
            return append("b")(content);
        };
    };
    rewrite(overtaken(2));
    EXPECT_EQ(edits, 3);
    EXPECT_EQ(file.read(), "aab");
    EXPECT_EQ(backup(), "aa");

    edits = 0;
    EXPECT_EQ(failure(overtaken(100)),
              "~/agent/settings.json could not be written: another program keeps changing it");
    EXPECT_EQ(edits, 3);
    EXPECT_EQ(file.read(), "aabaaa");
    EXPECT_EQ(names().size(), 2);
    rewrite([this](const auto &content) {
        QFile::remove(home.path(name));
        return append("new")(content);
    });
    EXPECT_EQ(file.read(), "new");
}

} // namespace
} // namespace morvane
