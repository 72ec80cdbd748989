#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QDBusMessage;

namespace morvane {

struct TerminalProcesses;

/// Terminals that have several tabs in a window, and windows in a process, asked over the message
/// bus for the tab that has a shell. Konsole answers always, GNOME Terminal where its integration
/// into the shell is switched on. Main thread; each answer within some seconds.
class TerminalTabs {
public:
    explicit TerminalTabs(const QDBusConnection &bus) : m_bus(bus) {}

    /// What is known of the window in which the tab is at the front now.
    struct Outcome {
        QString windowID; ///< its number where the desktop is X11, as it was when the shell started
        QString title;    ///< the tab's, for where that number may be out of date
        bool isShown = false; ///< the terminal has asked for the window to be shown
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
    QObject m_context; ///< with it go the answers that are still to come
};

} // namespace morvane
