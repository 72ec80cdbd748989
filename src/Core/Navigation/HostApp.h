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

/// Where a session counts as running that tells nothing of use.
inline constexpr QLatin1String iterm2("com.googlecode.iterm2");

/// The applications that count as terminals, by bundle identifier.
const QSet<QString> &terminalBundleIDs();

/// The bundle identifier of the host; never empty. A session that tells nothing of use falls to
/// iTerm2. An empty hint counts as absent.
QString bundleID(const std::optional<QString> &hostBundleID,
                 const std::optional<QString> &termProgram);

/// The host's short name for a row; none when there is no hint at all.
std::optional<QString> displayName(const std::optional<QString> &hostBundleID,
                                   const std::optional<QString> &termProgram,
                                   const InstalledApplications &applications);

/// True for an application that the session has reported to run in, unless that is known to be
/// another than a terminal. The application is named as `ForegroundApplication` does.
bool isReportedTerminal(const QString &foreground, const Session &session,
                        const InstalledApplications &applications);

/// The id by which iTerm2 knows a session, out of what it tells its children.
std::optional<QString> itermUUID(const std::optional<QString> &itermSessionID);

/// True where text can be typed into the session from outside: in a tmux pane, whose terminal every
/// agent has that runs in it directly, and in iTerm2 on a machine that has it.
bool canBeTypedInto(const Session &session, const InstalledApplications &applications,
                    const Processes &processes);

} // namespace morvane::HostApp
