#include "Platform/Linux/Desktop/DesktopLauncher.h"

#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/RaiseLowDescriptorLimit.h"
#include "Support/Printing.h"
#include "Support/TemporaryHome.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace morvane {
namespace {

TEST(DesktopEntry, ReadsACommandAsItsWriterMeantIt) {
    const std::pair<const char *, QStringList> commands[] = {
        {"/usr/bin/code --unity-launch %F", {"/usr/bin/code", "--unity-launch"}},
        {"\"/opt/My Editor/editor\"   --url=%u --", {"/opt/My Editor/editor", "--url=", "--"}},
        {R"(sh -c "echo \\$HOME \\"100%%\\" ; \\\\x" '')",
         {"sh", "-c", R"(echo $HOME "100%" ; \x)", ""}},
        {R"(env WINEPREFIX="/home/a b/.wine" wine C:\\\\windows\\\\x.exe)",
         {"env", "WINEPREFIX=/home/a b/.wine", "wine", R"(C:\windows\x.exe)"}},
        {R"(one\stwo 'it is $(touch /tmp/x); `y`' "a\nb")",
         {"one", "two", "it is $(touch /tmp/x); `y`", "a\nb"}},
        {"x %f %i %c %k", {"x"}},
    };
    for (const auto &[value, words] : commands) {
        EXPECT_EQ(DesktopEntry::command(QString::fromUtf8(value)), words) << value;
    }
    for (const char *broken :
         {"", "   ", "%U", "x \"open", "x 'open", "x %z", "x %", "x \\", "''"}) {
        EXPECT_EQ(DesktopEntry::command(QString::fromUtf8(broken)), std::nullopt) << broken;
    }
    EXPECT_EQ(DesktopEntry::execValue("/100% \"$HOME\" `y` a\\b\nc"),
              R"("/100%% \\"\\$HOME\\" \\`y\\` a\\\\b\nc")");
    for (const char *path : {"/opt/a \"b\"/$c`d\\e %f;é&", "/x\t\ny"}) {
        EXPECT_EQ(DesktopEntry::command(DesktopEntry::execValue(path)), QStringList{path}) << path;
    }
}

class DesktopLauncherTest : public testing::Test {
protected:
    DesktopLauncherTest() {
        home.set("XDG_DATA_HOME", home.path("data"));
        home.writeProgram("report",
                          "#!/bin/sh\n"
                          "{ pwd; echo \"$@\"; echo $DESKTOP_STARTUP_ID; ls /proc/$$/fd | grep 77; "
                          "ulimit -n; echo \"${QT_QPA_PLATFORM-unset}\"; } >\"$HOME/r\"\n"
                          "mv \"$HOME/r\" \"$HOME/told\"\n");
    }

    /// The program has written all it reports, and its end was handled: whatever runs when a test
    /// ends leaves its process object behind.
    bool hasReported() const {
        return becomesTrue([this] {
            const bool isAlone =
                ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT | __WALL) != 0;
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return isAlone && QFile::exists(home.path("told"));
        });
    }

    void install(const QString &id, const QByteArray &lines) {
        home.write("data/applications/" + id + ".desktop", "[Desktop Entry]\n" + lines);
    }

    TemporaryHome home;
};

TEST_F(DesktopLauncherTest, StartsAnApplicationThatHasNothingOfOurs) {
    const QByteArray limit = raiseLowDescriptorLimit();
    constexpr int leak = 77;
    ::dup2(STDIN_FILENO, leak);
    home.set("QT_QPA_PLATFORM", "xcb");
    install("kitty", "Exec=\"" + home.path("report").toUtf8() + "\" 'a  b' %U; $HOME\n");
    DesktopLauncher::launch("net.kovidgoyal.kitty", "click_TIME7");
    EXPECT_TRUE(hasReported());
    EXPECT_EQ(home.read("told").toStdString(),
              (home.path() + "\na  b ; $HOME\nclick_TIME7\n" + limit + "\nunset\n").toStdString());
    ::close(leak);
}

TEST_F(DesktopLauncherTest, LeavesAloneWhatItCannotStart) {
    const QByteArray report = "Exec=" + home.path("report").toUtf8() + "\n";
    install("hidden", "Hidden=true\n" + report);
    install("prompt", report + "Terminal=true\n");
    install("relative", "Exec=./report\n");
    install("absent", "Exec=/absent/program\n");
    install("broken", "Exec=\"" + home.path("report").toUtf8() + "\n");
    home.write("data/outside.desktop", "[Desktop Entry]\n" + report);
    for (const char *id : {"hidden", "prompt", "relative", "absent", "broken", "../outside", ""}) {
        DesktopLauncher::launch(QString::fromLatin1(id), {});
    }
    install("last", "Exec=" + home.path("report").toUtf8() + " last\n");
    DesktopLauncher::launch("last", {});
    EXPECT_TRUE(hasReported());
    EXPECT_TRUE(home.read("told").contains("\nlast\n"));
}

} // namespace
} // namespace morvane
