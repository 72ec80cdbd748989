#include "EndToEnd/ChildProcess.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <memory>
#include <regex>
#include <string>

namespace morvane {
namespace {

/// A file that an install changes, and what its owner has in it.
struct Target {
    const char *agent;
    const char *path;
    const char *original;
    /// Whether it is connected already, and the install takes it back.
    bool disconnects = false;
};

void PrintTo(const Target &target, std::ostream *out) {
    *out << target.agent << (target.disconnects ? "Disconnects" : "");
}

/// An install in a home of its own, by a program that strace lets fail, or ends, at one of its
/// system calls.
class InstallFaultTest : public testing::TestWithParam<Target> {
protected:
    void SetUp() override {
        if (ChildProcess({"strace", "-o", "/dev/null", "true"},
                         QProcessEnvironment::systemEnvironment())
                .wait() != 0) {
            GTEST_SKIP() << "no program may be traced here";
        }
    }

    /// The calls that change something on the disk. Not every processor has each of them, hence the
    /// question marks; strace counts each by itself.
    static constexpr std::array calls{
        "?write",    "?pwrite64",  "?writev", "?fsync",    "?fdatasync", "?ftruncate", "?rename",
        "?renameat", "?renameat2", "?link",   "?linkat",   "?unlink",    "?unlinkat",  "?mkdir",
        "?mkdirat",  "?chmod",     "?fchmod", "?fchmodat", "?chown",     "?fchown"};
    static constexpr int never = 65535;

    std::unique_ptr<TemporaryHome> newHome() const {
        auto home = std::make_unique<TemporaryHome>();
        home->write(target(), GetParam().original);
        home->write(".config/morvane/io.morvane.morvane.json",
                    R"({"eventToken":"token","eventServerPort":40123})");
        if (GetParam().disconnects) {
            ChildProcess({INSTALL_AGENT, GetParam().agent}, environmentOf(*home)).wait();
        }
        home->write(backup(), "older");
        return home;
    }

    static QByteArray content(const TemporaryHome &home, const QString &path) {
        // The home's path stands in the file.
        return home.read(path).replace(home.path().toUtf8(), "HOME");
    }

    static QProcessEnvironment environmentOf(const TemporaryHome &home) {
        QProcessEnvironment environment;
        environment.insert("HOME", home.path());
        environment.insert("XDG_CONFIG_HOME", home.path(".config"));
        environment.insert("PATH", qEnvironmentVariable("PATH"));
        // Leaks can't be looked for in a traced process.
        environment.insert("ASAN_OPTIONS", "detect_leaks=0");
        return environment;
    }

    QString target() const { return QLatin1String(GetParam().path); }
    QString backup() const { return target() + QLatin1String(".morvane-backup"); }

    /// Starts the install with `fault` at the call of that number.
    static std::unique_ptr<ChildProcess> start(const TemporaryHome &home, const char *call,
                                               const char *fault, int number) {
        QStringList command{"strace",
                            "-f",
                            "-o",
                            home.path("log"),
                            "-e",
                            QStringLiteral("trace=%1").arg(QLatin1String(call)),
                            "-e",
                            QStringLiteral("inject=%1:%2:when=%3")
                                .arg(QLatin1String(call), QLatin1String(fault))
                                .arg(number),
                            INSTALL_AGENT,
                            QLatin1String(GetParam().agent)};
        if (GetParam().disconnects) {
            command << "disconnect";
        }
        return std::make_unique<ChildProcess>(command, environmentOf(home));
    }

    /// Runs the install with the fault; the exit status, or none when it was ended. Sets `reached`
    /// to whether there was such a call.
    std::optional<int> install(const TemporaryHome &home, const char *call, const char *fault,
                               int number) {
        const auto status = start(home, call, fault, number)->wait();
        const QByteArray trace = home.read("log");
        reached = trace.contains("(INJECTED)") || trace.contains("killed by");
        return status;
    }

    /// The file must be as it was or as it shall be, and what it held before, and what its owner
    /// had in it, must be there.
    void expectWhole(const TemporaryHome &home) const {
        const QByteArray now = content(home, target());
        EXPECT_TRUE(now == before || now == after) << now.toStdString();
        if (target().endsWith(QLatin1String(".js"))) {
            return;
        }
        const QByteArray kept = content(home, backup());
        if (now != before || kept != "older") {
            // What changes nothing but our own lines in a TOML file leaves the backup alone.
            EXPECT_TRUE(kept == before || (before.contains("# >>>") && kept == "older"))
                << kept.toStdString();
        }
        EXPECT_TRUE(now == GetParam().original ||
                    home.read(target() + ".morvane-original") == GetParam().original);
    }

    /// Installs once for each call of each kind, with the fault there, and says how many there
    /// were.
    template <typename Check>
    int disturbEachCall(const char *fault, const Check &check) {
        const auto undisturbed = newHome();
        before = content(*undisturbed, target());
        EXPECT_EQ(install(*undisturbed, "?write", "error=EIO", never), 0);
        after = content(*undisturbed, target());
        int faults = 0;
        for (const char *call : calls) {
            for (int number = 1; !HasFailure(); ++number) {
                SCOPED_TRACE(std::string(call) + " " + std::to_string(number));
                const auto home = newHome();
                const auto status = install(*home, call, fault, number);
                expectWhole(*home);
                check(*home, status);
                if (!reached) {
                    break;
                }
                ++faults;
            }
        }
        return faults;
    }

    bool reached = false;
    QByteArray before;
    QByteArray after;
};

TEST_P(InstallFaultTest, LeavesTheFileWholeWhereverItIsEnded) {
    const auto check = [this](const TemporaryHome &, const std::optional<int> &status) {
        EXPECT_EQ(status.has_value(), !reached);
    };
    EXPECT_GE(disturbEachCall("signal=KILL", check), 4);
}

TEST_P(InstallFaultTest, LeavesTheFileWholeWhateverFails) {
    const auto check = [this](const TemporaryHome &home, const std::optional<int> &status) {
        const bool isNew = content(home, target()) != before;
        EXPECT_EQ(status, isNew ? 0 : 1);
        const QDir folder = QFileInfo(home.path(target())).dir();
        EXPECT_LE(folder.entryList(QDir::Files | QDir::Hidden).size(), 3);
    };
    EXPECT_GE(disturbEachCall("error=ENOSPC", check), 4);
}

/// Whenever the agent writes, be it a moment before the file is replaced.
TEST_P(InstallFaultTest, KeepsWhatIsWrittenWhileItRuns) {
    int stops = 0;
    for (int number = 1; !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        const auto home = newHome();
        const auto child = start(*home, "fsync", "signal=STOP", number);
        std::smatch stopped;
        std::string log;
        ASSERT_TRUE(waitUntil([&] {
            log = home->read("log").toStdString();
            return std::regex_search(log, stopped, std::regex("(\\d+) +--- stopped by")) ||
                   !child->isRunning();
        }));
        if (stopped.empty()) {
            break;
        }
        ++stops;
        home->write(target(), home->read(target()).replace("model", "moodel"));
        ::kill(std::stoi(stopped[1]), SIGCONT);
        EXPECT_EQ(child->wait(), 0);
        const bool isPlugin = target().endsWith(QLatin1String(".js"));
        const QByteArray now = home->read(target());
        EXPECT_TRUE(isPlugin ||
                    (now.contains("moodel") && now.contains("hook.sh") != GetParam().disconnects))
            << now.toStdString();
    }
    EXPECT_GE(stops, 2);
}

INSTANTIATE_TEST_SUITE_P(
    Agents, InstallFaultTest,
    testing::Values(Target{"claude", ".claude/settings.json", R"({"model":"opus"})"},
                    Target{"kimi", ".kimi/config.toml", "model = \"k2\"\n"},
                    Target{"claude", ".claude/settings.json", R"({"model":"opus"})", true},
                    Target{"kimi", ".kimi/config.toml", "model = \"k2\"\n", true},
                    Target{"opencode", ".config/opencode/plugins/morvane.js", "// older\n"}),
    testing::PrintToStringParamName());

} // namespace
} // namespace morvane
