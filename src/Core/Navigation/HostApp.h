#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace morvane {
class InstalledApplications;
class Processes;
struct Session;
} // namespace morvane

/// Which application hosts a session, from the two hints that its hooks report. Stateless.
namespace morvane::HostApp {

/// The host of a session that gives no useful hint.
inline constexpr QLatin1String iterm2("com.googlecode.iterm2");

/// The applications that count as terminals, by bundle identifier.
const QSet<QString> &terminalBundleIDs();

/// The bundle identifier of the host; never empty. It is iTerm2 for a session that gives no useful
/// hint. An empty hint counts as absent.
QString bundleID(const std::optional<QString> &hostBundleID,
                 const std::optional<QString> &termProgram);

/// The host's short name for a row; none when there is no hint at all.
std::optional<QString> displayName(const std::optional<QString> &hostBundleID,
                                   const std::optional<QString> &termProgram,
                                   const InstalledApplications &applications);

/// True if the session has reported this application as its host, unless it is known to be no
/// terminal. `foreground` is a name as `ForegroundApplication` gives it.
bool isReportedTerminal(const QString &foreground, const Session &session,
                        const InstalledApplications &applications);

/// The id by which iTerm2 knows a session, from what it puts in its children's environment.
std::optional<QString> itermUUID(const std::optional<QString> &itermSessionID);

/// True if text can be typed into the session from outside: into a tmux pane in which the agent
/// runs directly, so that it has reported a terminal, and into iTerm2 on a machine that has it.
bool canBeTypedInto(const Session &session, const InstalledApplications &applications,
                    const Processes &processes);

} // namespace morvane::HostApp
