#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QDBusMessage;

namespace morvane {

struct TerminalProcesses;

/// Selects the tab of a shell, over the message bus, in terminals with several tabs in a window and
/// several windows in a process. Konsole always answers, GNOME Terminal if its GNOME Shell
/// integration is switched on. Main thread; each answer within some seconds.
class TerminalTabs {
public:
    explicit TerminalTabs(const QDBusConnection &bus) : m_bus(bus) {}

    /// What is known of the window whose front tab is now the selected one.
    struct Outcome {
        QString windowID;     ///< on X11, the window's number as of the shell's start
        QString title;        ///< the tab's, if `windowID` may be out of date
        bool isShown = false; ///< the terminal itself has asked to show the window
    };

    using Selected = std::function<void(const Outcome &)>;

    /// The answer may come before the call returns.
    void select(const TerminalProcesses &processes, const Selected &selected);

private:
    using Answered = std::function<void(const QVariantList &)>;
    struct Place {
        QString service;
        QString path;
        QString interface;
    };
    struct KonsoleTab;

    void selectInKonsole(const TerminalProcesses &processes, const Selected &selected);
    void lookIntoItsWindow(const KonsoleTab &tab);
    void lookIntoAllWindows(const KonsoleTab &tab);
    void tellTitle(const KonsoleTab &tab);
    void selectInGnomeTerminal(const TerminalProcesses &processes, const Selected &selected);
    void ask(const Place &place, const char *method, const QVariantList &arguments,
             Answered answered);

    QDBusConnection m_bus;
    QObject m_context; ///< its destruction drops pending answers
};

} // namespace morvane
