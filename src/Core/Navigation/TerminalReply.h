#pragma once

#include "Core/Agents/PaneLocator.h"
#include "Platform/Processes.h"
#include "Platform/Task.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

namespace morvane {

class Scheduler;
class Scripting;
class Tools;
struct Session;

/// Types a text into a session's terminal, as if it had been typed there, and submits it: through
/// tmux, or else through iTerm2. One text is finished before the next begins. Owned by
/// `AppController`; main thread, which never waits.
class TerminalReply : public QObject {
    Q_OBJECT

public:
    /// All must outlive this.
    TerminalReply(Tools &tools, Scripting &scripting, const Processes &processes,
                  Scheduler &scheduler)
        : m_tools(tools), m_scripting(scripting), m_processes(processes), m_scheduler(scheduler) {}

    /// Called once, with whether the text was sent, as far as can be told.
    using Told = std::function<void(bool isSent)>;

    /// Asked before each step, since earlier texts may take a while.
    using IsWanted = std::function<bool()>;

    /// Sends the text without the blanks around it. Sends nothing if nothing else is in it, or if
    /// the session cannot be typed into. A tmux pane must be that of the session's terminal, with
    /// the agent in its foreground and not a shell, which would run the text.
    void send(const QString &text, const Session &session, const IsWanted &isWanted,
              const Told &told);

    /// The part of a text that can be typed: line ends become line feeds, and all other control
    /// characters but tabs go, since they could press keys.
    static QString typable(const QString &text);

    /// The tmux commands that type the text into the pane, to be run one after the other.
    static QList<QStringList> typing(const QString &text, const QString &pane);

    /// The AppleScript that has iTerm2 type a line into one of its sessions.
    static QString script(const QString &text, const QString &uuid);

private:
    struct Reply {
        PaneLocator pane;
        QString tty;
        std::optional<ProcessIdentity> agent;
        QList<QStringList> commands; ///< still to be run
        IsWanted isWanted;
        Told told;
    };

    void sendViaITerm(const QString &text, const QString &uuid, const Told &told);
    void begin();
    void runNext();
    void stepDone(bool succeeded);

    Tools &m_tools;
    Scripting &m_scripting;
    const Processes &m_processes;
    Scheduler &m_scheduler;
    std::deque<Reply> m_replies; ///< the first is being typed
    Task m_next;
};

} // namespace morvane
