#include "Core/Hooks/InstallerFixture.h"
#include "Core/Hooks/TomlHookEntries.h"

namespace morvane {
namespace {

using enum AgentKind;

/// A person's settings file: what it holds must be there again, to the last byte, after a
/// connection in which nobody else has written.
class SettingsReturnTest : public InstallerFixture {
protected:
    bool exists(const QString &path) const { return QFileInfo::exists(home.path(path)); }
};

/// The cases are the files of the fuzz corpus. As for the fuzz target, the first byte chooses the
/// agent.
TEST_F(SettingsReturnTest, BringsEveryFileBackToTheLastByteAndLosesNothingMeanwhile) {
    const QDir corpus(TEST_DATA "/../../../fuzz/corpus/SettingsReturnFuzz");
    const QStringList names = corpus.entryList(QDir::Files);
    EXPECT_GT(names.size(), 60);
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        QFile file(corpus.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const AgentKind kind = QList{claude, cursor, kimi}.at(file.read(1).at(0) % 3);
        const QByteArray before = file.readAll();
        const auto theirs = TomlHookEntries::find(before);
        if (kind == kimi && !theirs) {
            write(kind, before);
            EXPECT_NE(failure(installer(kind)->install()), "");
            EXPECT_EQ(text(kind).toStdString(), before.toStdString());
            continue;
        }
        folder(kind).removeRecursively();
        write(kind, before);
        connect(kind);
        EXPECT_TRUE(installer(kind)->isInstalled());
        EXPECT_EQ(issues(kind), QStringList());
        EXPECT_EQ(original(kind).toStdString(), before.toStdString());
        if (kind == kimi) {
            const auto both = TomlHookEntries::find(text(kind));
            ASSERT_TRUE(both) << text(kind).toStdString();
            EXPECT_GT(both->ours, 0);
            EXPECT_EQ(both->othersMeaning.toStdString(), theirs->othersMeaning.toStdString());
        }
        disconnect(kind);
        EXPECT_FALSE(exists(place(kind) + ".morvane-original"));
        EXPECT_EQ(text(kind).toStdString(), before.toStdString());
    }
}

TEST_F(SettingsReturnTest, KeepsTheOriginalThroughWhateverWeWriteMeanwhile) {
    for (const AgentKind kind : {claude, codex, cursor, kimi}) {
        const QByteArray before = kind == kimi ? "a = 1 # é" : "// mine\n{\"b\":1,\"a\":2}";
        write(kind, before);
        connect(kind);
        reconnect(kind);
        write(kind, text(kind).replace("/.morvane/", "/old/.morvane/"));
        EXPECT_TRUE(installer(kind)->hasStaleEntries());
        installer(kind, 40124)->renew();
        EXPECT_FALSE(installer(kind)->hasStaleEntries());
        EXPECT_EQ(original(kind), before);
        disconnect(kind);
        EXPECT_EQ(text(kind).toStdString(), before.toStdString());
    }
}

TEST_F(SettingsReturnTest, RefusesTomlThatCannotTakeHooks) {
    const std::array<QByteArray, 2> cases[] = {
        {"[hooks]\na = 1\n", "\"hooks\" in config.toml is no list of hooks at line 1"},
        {"a = 1\nhooks = 'none'\n", "\"hooks\" in config.toml is no list of hooks at line 2"},
        {"\nhooks = [{event = 'Stop', command = 'bell'}]\n",
         "the hooks in config.toml stand in one list at line 2, to which none can be added. "
         "Written as [[hooks]] each they can stay"},
        {"a = 1\nb =\n", "config.toml is no valid TOML at line 2"},
    };
    for (const auto &[before, message] : cases) {
        write(kimi, before);
        EXPECT_EQ(failure(installer(kimi)->install()), message.toStdString());
        EXPECT_EQ(text(kimi).toStdString(), before.toStdString());
        EXPECT_FALSE(installer(kimi)->isInstalled());
    }
}

/// Kimi's own saver writes the file anew from what it has read.
TEST_F(SettingsReturnTest, KnowsItsHooksWithoutTheCommentsAroundThem) {
    write(kimi, "a = 1\nhooks = []\n");
    connect(kimi);
    const QByteArray connected = text(kimi);
    QByteArrayList lines = connected.split('\n');
    lines.removeIf([](const QByteArray &line) { return line.startsWith('#') || line.isEmpty(); });
    const QByteArray tables = lines.join('\n') + "\n# theirs\n[[hooks]]\nevent = 'Stop'\n"
                                                 "command = 'bell'\n[b]\nc = 'é'\n";
    QByteArray inlined = "hooks = [";
    for (const char *entry : {"/x/.morvane/hook.sh kimi A", "bell", "/x/.morvane/hook.sh kimi B",
                              "/x/.morvane/hook.sh kimi C"}) {
        inlined += "{event = 'é', command = '" + QByteArray(entry) + "'},\n  ";
    }
    const std::array<QByteArray, 2> cases[] = {
        {tables, "a = 1\n# theirs\n[[hooks]]\nevent = 'Stop'\ncommand = 'bell'\n[b]\nc = 'é'\n"},
        {inlined + "]\n", "hooks = [{event = 'é', command = 'bell'},\n  ]\n"},
        {"hooks = [{command = '.morvane/hook.sh'}, {command = '.morvane/hook.sh x'}]",
         "hooks = []\n"},
        // As an older version has left it, which Kimi can't read.
        {"hooks = []\n\n" + connected.mid(connected.indexOf("# >>>")), "hooks = []\n"},
    };
    for (const auto &[saved, theirs] : cases) {
        SCOPED_TRACE(saved.toStdString());
        write(kimi, saved);
        EXPECT_TRUE(installer(kimi)->isInstalled());
        EXPECT_TRUE(installer(kimi)->hasStaleEntries());
        installer(kimi)->renew();
        if (!theirs.contains("hooks = [{")) {
            EXPECT_FALSE(installer(kimi)->hasStaleEntries());
            EXPECT_EQ(text(kimi).count("kimi Stop"), 1);
        }
        disconnect(kimi);
        EXPECT_EQ(text(kimi).toStdString(), theirs.toStdString());
    }
}

TEST_F(SettingsReturnTest, MendsAndTakesOutEveryBlockThatThereIs) {
    write(kimi, "a = 1");
    connect(kimi);
    const QByteArray once = text(kimi);
    const QByteArray twice = once + once.mid(once.indexOf("# >>>"));
    write(kimi, twice);
    EXPECT_TRUE(installer(kimi)->hasStaleEntries());
    installer(kimi)->renew();
    EXPECT_EQ(text(kimi).toStdString(), once.toStdString());
    write(kimi, twice);
    disconnect(kimi);
    EXPECT_EQ(text(kimi), "a = 1");
}

TEST_F(SettingsReturnTest, TakesAwayWhatOnlyWeHaveMade) {
    QDir(home.path()).mkpath(".config/opencode");
    for (const AgentKind kind : {claude, cursor, kimi, opencode}) {
        SCOPED_TRACE(rawValue(kind));
        connect(kind);
        reconnect(kind);
        disconnect(kind);
        EXPECT_FALSE(folder(kind).exists());
        folder(kind).mkpath(".");
        connect(kind);
        disconnect(kind);
        EXPECT_TRUE(folder(kind).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }
    EXPECT_TRUE(exists(".config/opencode"));

    connect(claude);
    write(claude, text(claude).replace("\"hooks\"", "\"a\": 1, \"hooks\""));
    home.write(".claude/other");
    disconnect(claude);
    EXPECT_EQ(text(claude), "{\n  \"a\": 1\n}\n");
}

TEST_F(SettingsReturnTest, KeepsTheOriginalBesideAFileThatOthersHaveChanged) {
    const QByteArray before = "// mine\n{\"b\":1,\"a\":2}";
    const auto changes = std::to_array<QByteArray (*)(QByteArray)>({
        [](QByteArray text) { return text.replace("\"b\": 1", "\"b\": 3"); },
        [](QByteArray text) { return text + "// new\n"; },
        [](QByteArray text) { return text.simplified(); },
    });
    for (const auto &change : changes) {
        write(claude, before);
        connect(claude);
        write(claude, change(text(claude)));
        connect(claude);
        disconnect(claude);
        EXPECT_TRUE(text(claude).startsWith("{\n  \"a\": 2,\n  \"b\": "))
            << text(claude).toStdString();
        EXPECT_EQ(original(claude), before);
        connect(claude); // what we have written never becomes the original
        EXPECT_EQ(original(claude), before);
        disconnect(claude);
        EXPECT_TRUE(original(claude) == before || text(claude) == before);
        write(claude, "{\"a\":3}");
        connect(claude);
        EXPECT_EQ(original(claude), "{\"a\":3}");
        disconnect(claude);
    }

    // Somebody has removed the copy, changed it, or put a link in its place.
    const QString copy = home.path(place(claude) + ".morvane-original");
    home.write("elsewhere", "{\"b\":1,\"a\":2}");
    const auto damages = std::to_array<std::function<void()>>({
        [&] { QFile::remove(copy); },
        [&] { home.write(place(claude) + ".morvane-original", "{\"other\":1}"); },
        [&] { QFile::remove(copy) && QFile::link(home.path("elsewhere"), copy); },
    });
    for (const auto &damage : damages) {
        write(claude, before);
        connect(claude);
        damage();
        disconnect(claude);
        EXPECT_EQ(text(claude), "{\n  \"a\": 2,\n  \"b\": 1\n}\n");
    }
    EXPECT_EQ(home.read("elsewhere"), "{\"b\":1,\"a\":2}");
}

TEST_F(SettingsReturnTest, LosesNoCommentWithACopyThatMakesWay) {
    const auto rescued = [this](AgentKind kind) {
        return home.read(place(kind) + ".morvane-comments");
    };
    const QByteArray first = "// mine\n{\"url\":\"//a\",\"b\":1}";
    write(claude, first);
    connect(claude);
    reconnect(claude);
    // A comment from the time of the connection: the next write drops it from the file, and the one
    // after that replaces the backup, which holds it last.
    write(claude, text(claude).replace("{\n  \"b\"", "{ /* \" */ \"b\""));
    reconnect(claude);
    EXPECT_FALSE(exists(place(claude) + ".morvane-comments"));
    reconnect(claude);
    EXPECT_TRUE(rescued(claude).contains("/* \" */"));
    disconnect(claude);
    EXPECT_EQ(text(claude), first);

    // The original is given up when the file was written anew, or is gone.
    for (const bool isThere : {true, false}) {
        const QByteArray comment = isThere ? "// one\n" : "// two\n";
        write(claude, comment + "{\"b\":1}");
        connect(claude);
        write(claude, text(claude).replace("\"b\": 1", "\"b\": 3"));
        disconnect(claude);
        EXPECT_FALSE(rescued(claude).contains(comment));
        QFile::remove(home.path(place(claude)));
        if (isThere) {
            write(claude, "{\"a\":3}");
        }
        connect(claude);
        EXPECT_TRUE(rescued(claude).contains(comment));
    }
    EXPECT_TRUE(rescued(claude).contains("/* \" */"));
    EXPECT_EQ(home.mode(place(claude) + ".morvane-comments") & 0044, 0U);
    const QByteArray all = rescued(claude);
    reconnect(claude);
    reconnect(claude);
    EXPECT_EQ(rescued(claude), all);

    // Kimi's own saver leaves comments out.
    write(kimi, "a = '#no' # one\nb = \"\"\"\n# none\n\"\"\"\n");
    connect(kimi);
    write(kimi, "a = '#no'\n");
    connect(kimi);
    EXPECT_TRUE(rescued(kimi).startsWith("a = '#no' # one\n"));
}

TEST_F(SettingsReturnTest, KeepsEachFileThatCannotBeUnderstoodUntilThereAreNine) {
    const auto broken = [](int number) { return "{\"a\":" + QByteArray::number(number); };
    for (int number = 1; number <= 9; ++number) {
        for (int times = 0; times < 2; ++times) {
            write(claude, broken(number));
            connect(claude);
        }
        const QString ending = number > 1 ? QString::number(-number) : QString();
        EXPECT_EQ(home.read(place(claude) + ".morvane-unreadable" + ending), broken(number));
    }
    write(claude, broken(10));
    EXPECT_TRUE(QByteArray::fromStdString(failure(installer(claude)->install()))
                    .endsWith("nine that could not be understood lie beside it already"));
    EXPECT_EQ(text(claude), broken(10));
}

TEST_F(SettingsReturnTest, TakesTheSwitchForNotificationsForItsOwn) {
    const auto mute = [&](bool suppressed) {
        EXPECT_EQ(failure(installer(claude)->setNotificationsSuppressed(suppressed)), "");
    };
    const QByteArray before = "// mine\n{\"b\":1,\"a\":2}";
    write(claude, before);
    mute(false);
    EXPECT_EQ(text(claude), before);
    mute(true);
    EXPECT_EQ(root(claude)["preferredNotifChannel"], "notifications_disabled");
    mute(false);
    EXPECT_EQ(text(claude), before);
    mute(true);
    connect(claude);
    mute(false);
    disconnect(claude);
    EXPECT_EQ(text(claude), before);
    connect(claude);
    mute(true);
    disconnect(claude); // must not bring the notifications back
    EXPECT_TRUE(installer(claude)->health().notificationsSuppressed);
    EXPECT_EQ(original(claude), before);
    mute(false);
    EXPECT_EQ(text(claude), before);
}

/// An agent that rewrites its file in place leaves it empty for an instant.
TEST_F(SettingsReturnTest, LooksAgainAtAFileThatIsBeingWritten) {
    for (const AgentKind kind : {claude, kimi}) {
        const QByteArray whole = kind == kimi ? "a = 1\n" : "{\"a\":1}";
        const auto finishing = [&](const QByteArray &content) {
            return [this, kind, content] { write(kind, content); };
        };
        for (const QByteArray &half : {QByteArray(), whole.left(3)}) {
            folder(kind).removeRecursively();
            write(kind, half);
            moment = finishing(whole);
            connect(kind);
            EXPECT_TRUE(text(kind).contains(whole.mid(2, 1)));
            EXPECT_EQ(original(kind), whole);
            const QByteArray connected = text(kind);

            write(kind, half);
            moment = finishing(connected);
            EXPECT_TRUE(installer(kind)->isInstalled());
            write(kind, half);
            disconnect(kind);
            EXPECT_EQ(text(kind), whole);
        }
        // A file that is hours old, or dated hours ahead, isn't being written at the moment.
        for (const int seconds : {-7200, 7200}) {
            write(kind, "");
            home.setWritten(place(kind), QDateTime::currentDateTime().addSecs(seconds));
            EXPECT_FALSE(installer(kind)->isInstalled());
        }
        moment = [] {};
    }
}

} // namespace
} // namespace morvane
