#pragma once

#include "Core/Agents/PaneLocator.h"
#include "Platform/Processes.h"
#include "Platform/Time.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace morvane {
class HostWindows;
class Scripting;
class Tools;
struct CompletedRecord;
struct HostWindow;
struct Session;
} // namespace morvane

/// Goes to where a session runs: selects the pane, the tab and the window, and brings the program
/// that has them to the front, or starts it. A chain of attempts; what can't be done is skipped
/// silently. Stateless; main thread, which never waits.
///
/// The functions at the top work out what to try, as values; `jump` does it.
namespace morvane::JumpService {

/// Where an agent runs, as far as its hooks have told.
struct Destination {
    std::optional<QString> itermSessionID;
    std::optional<QString> termProgram;
    std::optional<QString> hostBundleID;
    QString projectName; ///< never empty
    PaneLocator pane;
    std::optional<QString> ttyName;
    Date toldAt;                                 ///< a terminal opened later only has the same name
    std::optional<ProcessIdentity> process = {}; ///< the one that runs in the terminal

    static Destination of(const Session &session);
    static Destination of(const CompletedRecord &record);

    /// True when there is anything to go to. A terminal's device alone says too little.
    bool isPlace() const;

    friend bool operator==(const Destination &, const Destination &) = default;
};

/// A session of iTerm2, which a script selects.
struct ITermSession {
    QString uuid;
    friend bool operator==(const ITermSession &, const ITermSession &) = default;
};

/// A tab of Terminal, which a script selects.
struct TerminalTab {
    QString tty;
    friend bool operator==(const TerminalTab &, const TerminalTab &) = default;
};

/// A pane that its terminal is told to select, if it has any.
struct TerminalPane {
    friend bool operator==(const TerminalPane &, const TerminalPane &) = default;
};

using Step = std::variant<ITermSession, TerminalTab, TerminalPane>;

/// The step to take before the host is brought forward: the first that applies. The order is part
/// of the design.
Step firstStep(const Destination &destination);

/// A window's title, split at the separators that programs put between the names of a file, a
/// project and themselves.
QStringList titleComponents(const QString &title);

/// The window of a project: one whose title has the name as a component, else one whose title
/// contains it, so that a short name doesn't find a longer one first.
std::optional<HostWindow> windowOf(const QString &projectName, const QList<HostWindow> &windows);

/// The AppleScript that selects a session of iTerm2 and answers "found".
QString itermScript(const QString &uuid);

/// The AppleScript that selects a tab of Terminal.
QString terminalScript(const QString &tty);

/// What a jump asks of the machine; all of it outlives the jump.
struct Means {
    Tools &tools;
    const Processes &processes;
    Scripting &scripting;
    HostWindows &windows;
};

/// Begins a jump, and returns.
void jump(const Destination &destination, const Means &means);

} // namespace morvane::JumpService
