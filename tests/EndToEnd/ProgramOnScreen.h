#pragma once

#include "EndToEnd/ChildProcess.h"
#include "EndToEnd/ProgramHome.h"
#include "EndToEnd/VirtualDisplay.h"
#include "Support/WaitUntil.h"

#include <QFile>
#include <QRect>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace morvane {

/// A display with a window manager for the real program, in a home of its own; the test starts what
/// it needs there. Skipped where a program for it isn't installed.
class ProgramOnScreen : public testing::Test {
protected:
    static constexpr const char *terminalTitle = "terminal";

    // What a terminal tells the program in it of a button that was pressed.
    static constexpr const char *leftPress = "\x1b[M ";
    static constexpr const char *rightPress = "\x1b[M\"";

    explicit ProgramOnScreen(const WindowManager &manager = WindowManager::openbox,
                             const QJsonObject &settings = {{"showWhenIdle", true}})
        : manager(manager), home(settings) {}

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

    /// A terminal that has the keyboard, and notes every key and click that reaches it.
    void startTerminal(const QStringList &options = {}) {
        terminal = start(QStringList{"xterm"} + options +
                         QStringList{"-title", QLatin1String(terminalTitle), "-e", "sh", "-c",
                                     "stty raw -echo; printf '\\033[?1000h'; exec cat >\"$0\"",
                                     home.path("received")});
        ASSERT_TRUE(waitUntil([this] { return QFile::exists(home.path("received")); }));
        ASSERT_TRUE(display->bringToFront(terminalTitle));
    }

    std::unique_ptr<ChildProcess> start(const QStringList &command,
                                        const QByteArray &input = {}) const {
        return std::make_unique<ChildProcess>(command, display->environment(), input);
    }

    /// Where the visible object of this role and name is.
    std::optional<QRect> find(const QString &role, const QString &name,
                              const QStringList &options = {}) const {
        const auto finder =
            start(QStringList{FIND_ACCESSIBLE, "--extents"} + options + QStringList{role, name});
        if (finder->wait() != 0) {
            return std::nullopt;
        }
        const QList<QByteArray> numbers = finder->output().simplified().split(' ');
        return QRect(numbers.value(0).toInt(), numbers.value(1).toInt(), numbers.value(2).toInt(),
                     numbers.value(3).toInt());
    }

    /// The capsule or the shell, closed or grown into the panel.
    std::optional<QRect> tab() const { return find("filler", "Morvane"); }

    bool terminalHasKeyboard() const { return display->focusedTitle() == terminalTitle; }

    /// What has reached the terminal so far.
    QByteArray received() const {
        QFile file(home.path("received"));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    const WindowManager manager;
    ProgramHome home;
    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<ChildProcess> terminal;
    std::unique_ptr<ChildProcess> program;
};

} // namespace morvane
