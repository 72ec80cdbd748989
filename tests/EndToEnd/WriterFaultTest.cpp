#include "EndToEnd/ChildProcess.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <QMap>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <string>
#include <unistd.h>

namespace morvane {
namespace {

const char *const defaults = ".config/morvane/io.morvane.morvane.json";
const char *const autostart = ".config/autostart/io.morvane.morvane.desktop";
const char *const ownSettings = R"({"eventToken":"token","eventServerPort":40123})";
const char *const claude = ".claude/settings.json";
const char *const kimi = ".kimi/config.toml";

/// A file that a writer changes, and what is in it before.
struct Target {
    const char *name;
    const char *writer;
    const char *agent;
    const char *path;
    const char *original; ///< null for no file
    /// True for another program's file: what that held before is kept beside it.
    bool isAnothers = false;

    bool disconnects() const { return std::string_view(writer) == "disconnect"; }
};

void PrintTo(const Target &target, std::ostream *out) {
    *out << target.name;
}

/// One writer in a home of its own, in a program that strace lets fail, or ends, at one of its
/// system calls.
class WriterFaultTest : public testing::TestWithParam<Target> {
protected:
    void SetUp() override {
        if (run({"strace", "-o", "/dev/null", "true"}) != 0) {
            GTEST_SKIP() << "no program may be traced here";
        }
    }

    /// The calls that change something on the disk. Not every processor has each of them, hence the
    /// question marks.
    inline static const QStringList calls{
        "?write",    "?pwrite64",  "?writev", "?fsync",    "?fdatasync", "?ftruncate", "?rename",
        "?renameat", "?renameat2", "?link",   "?linkat",   "?unlink",    "?unlinkat",  "?mkdir",
        "?mkdirat",  "?chmod",     "?fchmod", "?fchmodat", "?chown",     "?fchown"};

    static constexpr mode_t mode = 0640;

    std::unique_ptr<TemporaryHome> newHome() const {
        auto home = std::make_unique<TemporaryHome>();
        home->write(defaults, ownSettings);
        if (GetParam().original != nullptr) {
            home->write(target(), GetParam().original);
            ::chmod(QFile::encodeName(home->path(target())).constData(), mode);
        }
        if (GetParam().disconnects()) {
            run({WRITE_ONCE, "connect", GetParam().agent});
        }
        if (GetParam().isAnothers) {
            home->write(backup(), "older");
        }
        return home;
    }

    static QByteArray content(const TemporaryHome &home, const QString &path) {
        // The home's path stands in the file.
        return home.read(path).replace(home.path().toUtf8(), "HOME");
    }

    /// Runs in the only home that exists at the time: the test's own environment points into it.
    static std::optional<int> run(const QStringList &command) {
        return ChildProcess(command, QProcessEnvironment::systemEnvironment()).wait();
    }

    QString target() const { return QLatin1String(GetParam().path); }
    QString backup() const { return target() + QLatin1String(".morvane-backup"); }

    static QStringList writer() { return {WRITE_ONCE, GetParam().writer, GetParam().agent}; }

    /// Starts the writer with `fault` at these calls, or only at those for `file`.
    static std::unique_ptr<ChildProcess> start(const TemporaryHome &home, const QString &which,
                                               const QString &fault, const QString &when,
                                               const QString &file = {}) {
        const QString inject = QStringLiteral("inject=%1:%2:when=%3").arg(which, fault, when);
        return std::make_unique<ChildProcess>(traced(home, which, file) +
                                                  QStringList{"-e", inject} + writer(),
                                              QProcessEnvironment::systemEnvironment());
    }

    /// The part of the command that runs the writer under strace.
    static QStringList traced(const TemporaryHome &home, const QString &which,
                              const QString &file) {
        QStringList command{"strace", "-f", "-o", home.path("log"), "-e", "trace=" + which};
        if (!file.isEmpty()) {
            command << "-P" << home.path(file);
        }
        return command;
    }

    /// Runs the writer with the fault; yields its exit status, or none when a signal ended it. Sets
    /// `reached` to whether such a call was made.
    std::optional<int> write(const TemporaryHome &home, const QString &which, const QString &fault,
                             const QString &when, const QString &file = {}) {
        const auto status = start(home, which, fault, when, file)->wait();
        const QByteArray trace = home.read("log");
        reached = trace.contains("(INJECTED)") || trace.contains("killed by");
        return status;
    }

    /// Sets `before` and `after` to what is in the file around an undisturbed run. Yields how often
    /// the writer makes each of these calls, or only those for `file`.
    QMap<QString, int> learn(const QStringList &which = calls, const QString &file = {}) {
        const auto home = newHome();
        before = content(*home, target());
        EXPECT_EQ(run(traced(*home, which.join(','), file) + writer()), 0);
        after = content(*home, target());
        EXPECT_NE(before, after);
        QMap<QString, int> counts;
        // A call's line begins with the number of the process, its name and a bracket.
        for (const QByteArray &line : home->read("log").split('\n')) {
            const auto words = line.left(line.indexOf('(')).simplified().split(' ');
            if (words.size() == 2) {
                ++counts[QString::fromLatin1(words.last())];
            }
        }
        return counts;
    }

    /// The file must hold its old or its new content. For another program's file, the content
    /// before this change and the owner's original must both still exist.
    void expectWhole(const TemporaryHome &home) const {
        const QByteArray now = content(home, target());
        EXPECT_TRUE(now == before || now == after) << now.toStdString();
        if (!GetParam().isAnothers) {
            return;
        }
        EXPECT_EQ(home.mode(target()), mode);
        const QByteArray kept = content(home, backup());
        if (now != before || kept != "older") {
            // A change of nothing but our own lines in a TOML file leaves the backup alone.
            EXPECT_TRUE(kept == before || (before.contains("# >>>") && kept == "older"))
                << kept.toStdString();
        }
        EXPECT_TRUE(now == GetParam().original ||
                    home.read(target() + ".morvane-original") == GetParam().original);
    }

    /// Whatever a fault has left behind, the next try succeeds.
    void expectNextTryWrites(const TemporaryHome &home) const {
        EXPECT_EQ(run(writer()), 0);
        EXPECT_EQ(content(home, target()), after);
    }

    /// Runs the writer once for each of these calls, or only those for `file`, with the fault at
    /// that call. Yields the number of runs.
    template <typename Check>
    int disturbEach(const QStringList &which, const char *fault, const Check &check,
                    const QString &file = {}) {
        int faults = 0;
        const auto counts = learn(which, file);
        for (auto call = counts.begin(); call != counts.end(); ++call) {
            for (int number = 1; number <= call.value() && !HasFailure(); ++number) {
                SCOPED_TRACE(call.key().toStdString() + " " + std::to_string(number));
                const auto home = newHome();
                const auto status = write(*home, call.key(), fault, QString::number(number), file);
                EXPECT_TRUE(reached);
                ++faults;
                expectWhole(*home);
                check(*home, status);
            }
        }
        RecordProperty("faults", faults);
        return faults;
    }

    bool reached = false;
    QByteArray before;
    QByteArray after;
};

TEST_P(WriterFaultTest, LeavesTheFileWholeWhereverItIsEnded) {
    const auto check = [this](const TemporaryHome &home, const std::optional<int> &status) {
        EXPECT_EQ(status, std::nullopt);
        expectNextTryWrites(home);
    };
    EXPECT_GE(disturbEach(calls, "signal=KILL", check), 1);
}

TEST_P(WriterFaultTest, LeavesTheFileWholeWhateverFails) {
    const auto check = [this](const TemporaryHome &home, const std::optional<int> &status) {
        EXPECT_EQ(status, content(home, target()) == before ? 1 : 0);
        const QDir folder = QFileInfo(home.path(target())).dir();
        EXPECT_LE(folder.entryList(QDir::Files | QDir::Hidden).size(), 3);
        expectNextTryWrites(home);
    };
    EXPECT_GE(disturbEach(calls, "error=ENOSPC", check), 1);
}

/// A file system on which one kind of change always fails: any change when it is read-only or full,
/// a rename over a file, a change of owner.
TEST_P(WriterFaultTest, LeavesTheFileWholeOnAFileSystemThatCannot) {
    learn();
    for (const auto &[which, error] :
         {std::pair(calls.join(','), "error=EROFS"), std::pair(calls.join(','), "error=EDQUOT"),
          std::pair(QStringLiteral("?rename,?renameat,?renameat2"), "error=EEXIST"),
          std::pair(QStringLiteral("?link,?linkat"), "error=EPERM"),
          std::pair(QStringLiteral("?fsync,?fdatasync"), "error=EINVAL"),
          std::pair(QStringLiteral("?chmod,?fchmod,?fchmodat,?chown,?fchown"), "error=EPERM")}) {
        SCOPED_TRACE(which.toStdString() + error);
        const auto home = newHome();
        const auto status = write(*home, which, error, "1+");
        expectWhole(*home);
        EXPECT_EQ(status, content(*home, target()) == before ? 1 : 0);
        expectNextTryWrites(*home);
    }
}

class SharedFileFaultTest : public WriterFaultTest {};

/// A file that can't be read back once it is written is replaced by what was there before.
TEST_P(SharedFileFaultTest, LeavesTheFileWholeWhereItCannotBeRead) {
    const auto check = [this](const TemporaryHome &home, const std::optional<int> &status) {
        EXPECT_EQ(status, content(home, target()) == before ? 1 : 0);
    };
    EXPECT_GE(disturbEach({"?open", "?openat"}, "error=EIO", check, target()), 3);
}

/// As a container leaves a file when it has run as this user, but in a group of its own.
TEST_P(SharedFileFaultTest, IsWrittenWhereItsGroupCannotBeKept) {
    learn();
    for (const auto &[old, cut] : {std::pair(0664U, 0644U), {02760U, 0700U}, {0604U, 0604U}}) {
        const auto home = newHome();
        const QByteArray file = QFile::encodeName(home->path(target()));
        constexpr gid_t foreign = 54321;
        if (::chown(file.constData(), ::getuid(), foreign) != 0) {
            GTEST_SKIP() << "only an administrator can make such a file";
        }
        ::chmod(file.constData(), old);
        EXPECT_EQ(write(*home, "?fchown", "error=EPERM", "1+"), 0);
        EXPECT_TRUE(reached);
        EXPECT_EQ(content(*home, target()), after);
        EXPECT_EQ(home->mode(target()), cut);
        EXPECT_EQ(QFileInfo(home->path(target())).groupId(), ::getgid());
    }
}

/// Whenever the agent writes, even a moment before the file is replaced.
TEST_P(SharedFileFaultTest, KeepsWhatIsWrittenWhileItRuns) {
    int stops = 0;
    for (int number = 1; !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        const auto home = newHome();
        const auto child = start(*home, "fsync", "signal=STOP", QString::number(number));
        QByteArray stopped; // the log up to the line that reports the stop
        ASSERT_TRUE(waitUntil([&] {
            const QByteArray log = home->read("log");
            stopped = log.first(std::max<qsizetype>(log.indexOf("--- stopped by"), 0));
            return !stopped.isEmpty() || !child->isRunning();
        }));
        if (stopped.isEmpty()) {
            break;
        }
        ++stops;
        home->write(target(), home->read(target()).replace("model", "moodel"));
        ::kill(stopped.mid(stopped.lastIndexOf('\n') + 1).trimmed().toInt(), SIGCONT);
        EXPECT_EQ(child->wait(), 0);
        const QByteArray now = home->read(target());
        EXPECT_TRUE(now.contains("moodel") && now.contains("hook.sh") != GetParam().disconnects())
            << now.toStdString();
    }
    EXPECT_GE(stops, 2);
}

const auto sharedFiles = testing::Values(
    Target{"claude", "connect", "claude", claude, R"({"model":"opus"})", true},
    Target{"kimi", "connect", "kimi", kimi, "model = \"k2\"\n", true},
    Target{"claudeDisconnects", "disconnect", "claude", claude, R"({"model":"opus"})", true},
    Target{"kimiDisconnects", "disconnect", "kimi", kimi, "model = \"k2\"\n", true});

const auto ownFiles = testing::Values(
    Target{"opencode", "connect", "opencode", ".config/opencode/plugins/morvane.js", "// older\n"},
    Target{"defaults", "defaults", "", defaults, ownSettings},
    Target{"scripts", "scripts", "", ".morvane/hook.sh", "#!/bin/sh\n"},
    Target{"autostart", "autostart", "", autostart, "[Desktop Entry]\nHidden=true\n"},
    Target{"noAutostart", "no-autostart", "", autostart, "[Desktop Entry]\n"},
    Target{"update", "update", "", ".cache/morvane/update/morvane_2.0.deb", nullptr});

INSTANTIATE_TEST_SUITE_P(Shared, WriterFaultTest, sharedFiles, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Own, WriterFaultTest, ownFiles, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Shared, SharedFileFaultTest, sharedFiles,
                         testing::PrintToStringParamName());

} // namespace
} // namespace morvane
