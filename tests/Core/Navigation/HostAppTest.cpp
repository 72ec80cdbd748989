#include "Core/Navigation/HostApp.h"

#include "Core/Sessions/Session.h"
#include "Support/FakeProcesses.h"
#include "Support/NoApplications.h"
#include "Support/Printing.h"

namespace morvane {
namespace {

using Hint = std::optional<QString>;

class FakeApplications : public NoApplications {
public:
    std::optional<QString> displayName(const QString &bundleID) const override {
        return installed.contains(bundleID) ? std::optional(installed[bundleID]) : std::nullopt;
    }

    QMap<QString, QString> installed;
};

TEST(HostApp, FindsTheHostFromItsHintsAndAsksTheMachineOnlyForWhatItDoesNotKnow) {
    FakeApplications applications;
    applications.installed = {{"org.gnome.Console", "King's Cross"},
                              {"org.example.Edit.app", "Edit.app"},
                              {"net.kovidgoyal.kitty", "Another Name"}};
    const std::tuple<Hint, Hint, QString, Hint> cases[] = {
        {{}, {}, "com.googlecode.iterm2", {}},
        {"", "ghostty", "com.mitchellh.ghostty", "Ghostty"},
        {{}, "xterm", "com.googlecode.iterm2", "iTerm"},
        {"com.todesktop.230313mzl4w4u92", "vscode", "com.todesktop.230313mzl4w4u92", "Cursor"},
        {"org.gnome.Terminal", "kitty", "org.gnome.Terminal", "Terminal"},
        {"plain", {}, "plain", "plain"},
        {"org.gnome.Console", {}, "org.gnome.Console", "King's Cross"},
        {"org.example.Edit.app", {}, "org.example.Edit.app", "Edit"},
        {{}, "kitty", "net.kovidgoyal.kitty", "kitty"},
        {"org.example.dotted.", {}, "org.example.dotted.", "dotted"}};
    for (const auto &[hostBundleID, termProgram, bundleID, name] : cases) {
        SCOPED_TRACE(bundleID.toStdString());
        EXPECT_EQ(HostApp::bundleID(hostBundleID, termProgram), bundleID);
        EXPECT_EQ(HostApp::displayName(hostBundleID, termProgram, applications), name);
    }
}

TEST(HostApp, KnowsTheTerminalThatASessionHasReported) {
    FakeApplications applications;
    applications.installed = {{"codium", "VSCodium"}};
    const std::tuple<Hint, Hint, QString, bool> cases[] = {
        {{}, "vscode", "com.microsoft.VSCode", false},  {"codium", "vscode", "codium", false},
        {{}, "ghostty", "com.mitchellh.ghostty", true}, {{}, "rio", "rio", true},
        {{}, "rio", "com.googlecode.iterm2", false},    {"", "", "", false}};
    for (const auto &[hostBundleID, termProgram, foreground, isTerminal] : cases) {
        Session session;
        session.hostBundleID = hostBundleID;
        session.termProgram = termProgram;
        EXPECT_EQ(HostApp::isReportedTerminal(foreground, session, applications), isTerminal)
            << foreground.toStdString();
    }
}

TEST(HostApp, OffersToTypeOnlyWhereThatCanBeDone) {
    FakeApplications applications;
    FakeProcesses processes;
    processes.listeners["/s"] = 7;
    Hint tty = QStringLiteral("/dev/pts/5");
    const auto can = [&](const Hint &tmux, const Hint &bundle, const Hint &program) {
        Session session;
        session.pane.tmux = tmux;
        session.pane.tmuxServer = QStringLiteral("/s,7,0");
        session.ttyName = tty;
        session.process = ProcessIdentity{42, 1, 1};
        session.hostBundleID = bundle;
        session.termProgram = program;
        return HostApp::canBeTypedInto(session, applications, processes);
    };
    EXPECT_TRUE(can("%1", "com.mitchellh.ghostty", {}));
    processes.openers[42] = 9; // an editor in the pane, which has terminals of its own
    EXPECT_FALSE(can("%1", {}, {}));
    processes.openers[42] = 7;
    EXPECT_TRUE(can("%1", {}, {}));
    EXPECT_FALSE(can({}, {}, {}));
    applications.installed = {{"com.googlecode.iterm2", "iTerm"}};
    EXPECT_TRUE(can({}, {}, {}));
    EXPECT_FALSE(can({}, "com.mitchellh.ghostty", "iTerm.app"));
    tty.reset(); // an agent without a terminal, whose ancestor had one
    EXPECT_FALSE(can("%1", {}, {}));
    tty = QStringLiteral("/dev/pts/5");
    processes.listeners.clear();
    EXPECT_FALSE(can("%1", {}, {}));
}

} // namespace
} // namespace morvane
