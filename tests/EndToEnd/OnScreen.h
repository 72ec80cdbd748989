#pragma once

#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/ProgramHome.h"
#include "EndToEnd/VirtualDisplay.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <gtest/gtest.h>

#include <memory>

namespace morvane {

/// A display with a window manager and a person's home; the test starts what it needs there. The
/// test is skipped where a program that this needs isn't installed.
class OnScreen : public testing::Test {
protected:
    static constexpr const char *terminalTitle = "terminal";

    explicit OnScreen(const WindowManager &manager) : manager(manager) {}

    void SetUp() override {
        const QStringList missing = VirtualDisplay::missingPrograms(manager);
        if (!missing.isEmpty()) {
            GTEST_SKIP() << "These programs are needed and not installed: "
                         << missing.join(QStringLiteral(", ")).toStdString();
        }
        home.setVariable("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        display = std::make_unique<VirtualDisplay>(home.environment(), manager);
        ASSERT_TRUE(display->isUp());
        startAll();
    }

    /// Called once the display is up.
    virtual void startAll() = 0;

    std::unique_ptr<ChildProcess> start(const QStringList &command,
                                        const QByteArray &input = {}) const {
        return std::make_unique<ChildProcess>(command, display->environment(), input);
    }

    /// Opens a terminal that writes every key and click it receives into a file named after its
    /// title.
    std::unique_ptr<ChildProcess> openTerminal(const char *title,
                                               const QStringList &options = {}) const {
        return start(QStringList{"xterm"} + options +
                     QStringList{"-title", title, "-e", "sh", "-c",
                                 "stty raw -echo; printf '\\033[?1000h'; exec cat >\"$0\"",
                                 home.path(title)});
    }
    /// Opens `terminal`, and gives it the keyboard.
    void startTerminal(const QStringList &options = {}) {
        terminal = openTerminal(terminalTitle, options);
        ASSERT_TRUE(waitUntil([this] { return QFile::exists(home.path(terminalTitle)); }));
        ASSERT_TRUE(display->bringToFront(terminalTitle));
    }
    bool terminalHasKeyboard() const { return display->focusedTitle() == terminalTitle; }
    /// What has reached that terminal so far.
    QByteArray received() const { return home.read(terminalTitle); }

    const WindowManager manager;
    ProgramHome home;
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<ChildProcess> terminal;
};

} // namespace morvane
