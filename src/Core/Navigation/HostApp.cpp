#include "Core/Navigation/HostApp.h"

#include "Core/Navigation/PaneFocus.h"
#include "Core/Sessions/Session.h"
#include "Platform/InstalledApplications.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <array>

namespace morvane::HostApp {

namespace {

const QHash<QString, QString> &termProgramBundleIDs() {
    static const QHash<QString, QString> table{
        {QStringLiteral("Apple_Terminal"), QStringLiteral("com.apple.Terminal")},
        {QStringLiteral("ghostty"), QStringLiteral("com.mitchellh.ghostty")},
        {QStringLiteral("WarpTerminal"), QStringLiteral("dev.warp.Warp-Stable")},
        {QStringLiteral("kitty"), QStringLiteral("net.kovidgoyal.kitty")},
        {QStringLiteral("vscode"), QStringLiteral("com.microsoft.VSCode")},
        {QStringLiteral("iTerm.app"), QStringLiteral("com.googlecode.iterm2")},
        {QStringLiteral("WezTerm"), QStringLiteral("com.github.wez.wezterm")},
    };
    return table;
}

const QHash<QString, QString> &shortNames() {
    static const QHash<QString, QString> table{
        {QStringLiteral("com.googlecode.iterm2"), QStringLiteral("iTerm")},
        {QStringLiteral("com.apple.Terminal"), QStringLiteral("Terminal")},
        {QStringLiteral("com.mitchellh.ghostty"), QStringLiteral("Ghostty")},
        {QStringLiteral("net.kovidgoyal.kitty"), QStringLiteral("kitty")},
        {QStringLiteral("dev.warp.Warp-Stable"), QStringLiteral("Warp")},
        {QStringLiteral("io.alacritty"), QStringLiteral("Alacritty")},
        {QStringLiteral("com.github.wez.wezterm"), QStringLiteral("WezTerm")},
        {QStringLiteral("com.microsoft.VSCode"), QStringLiteral("VS Code")},
        {QStringLiteral("com.todesktop.230313mzl4w4u92"), QStringLiteral("Cursor")},
        {QStringLiteral("com.jetbrains.WebStorm"), QStringLiteral("WebStorm")},
        {QStringLiteral("com.jetbrains.PhpStorm"), QStringLiteral("PhpStorm")},
        {QStringLiteral("com.jetbrains.intellij"), QStringLiteral("IntelliJ")},
        {QStringLiteral("com.jetbrains.pycharm"), QStringLiteral("PyCharm")},
        {QStringLiteral("com.openai.codex"), QStringLiteral("Codex Desktop")},
        {QStringLiteral("com.stablyai.orca"), QStringLiteral("Orca")},
    };
    return table;
}

bool isBlank(const std::optional<QString> &hint) {
    return !hint || hint->isEmpty();
}

/// Not an editor: it has a terminal of its own, but a person who looks at it need not see that.
bool mayBeTerminal(const QString &host, const InstalledApplications &applications) {
    const bool isKnown = shortNames().contains(host) || applications.displayName(host);
    return !isKnown || terminalBundleIDs().contains(host) || applications.isTerminal(host);
}

} // namespace

const QSet<QString> &terminalBundleIDs() {
    static const QSet<QString> table{
        QStringLiteral("com.googlecode.iterm2"),  QStringLiteral("com.apple.Terminal"),
        QStringLiteral("com.mitchellh.ghostty"),  QStringLiteral("net.kovidgoyal.kitty"),
        QStringLiteral("dev.warp.Warp-Stable"),   QStringLiteral("io.alacritty"),
        QStringLiteral("com.github.wez.wezterm"), QStringLiteral("com.stablyai.orca"),
    };
    return table;
}

QString bundleID(const std::optional<QString> &hostBundleID,
                 const std::optional<QString> &termProgram) {
    if (!isBlank(hostBundleID)) {
        return *hostBundleID;
    }
    return termProgramBundleIDs().value(termProgram.value_or(QString()), iterm2);
}

std::optional<QString> displayName(const std::optional<QString> &hostBundleID,
                                   const std::optional<QString> &termProgram,
                                   const InstalledApplications &applications) {
    if (isBlank(hostBundleID) && isBlank(termProgram)) {
        return std::nullopt;
    }
    const QString bundle = bundleID(hostBundleID, termProgram);
    if (const auto known = shortNames().constFind(bundle); known != shortNames().constEnd()) {
        return *known;
    }
    if (auto installed = applications.displayName(bundle)) {
        installed->remove(QLatin1String(".app"));
        if (!installed->isEmpty()) {
            return installed;
        }
    }
    const QStringList pieces = bundle.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    return pieces.isEmpty() ? termProgram : std::optional(pieces.last());
}

bool isReportedTerminal(const QString &foreground, const Session &session,
                        const InstalledApplications &applications) {
    // Not `bundleID`: a session without useful hints hasn't reported its default.
    const QString program = session.termProgram.value_or(QString());
    const std::array hosts{session.hostBundleID.value_or(QString()),
                           termProgramBundleIDs().value(program), program};
    return std::ranges::any_of(hosts, [&](const QString &host) {
        return !host.isEmpty() && applications.isCalled(host, foreground) &&
               mayBeTerminal(host, applications);
    });
}

std::optional<QString> itermUUID(const std::optional<QString> &itermSessionID) {
    const QStringList pieces =
        itermSessionID.value_or(QString()).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return pieces.isEmpty() ? std::nullopt : std::optional(pieces.last());
}

bool canBeTypedInto(const Session &session, const InstalledApplications &applications,
                    const Processes &processes) {
    if (session.pane.tmux) {
        return session.ttyName && PaneFocus::hasTmuxPane(session.pane, processes) &&
               (!session.process ||
                PaneFocus::mayRunInTmuxPane(*session.process, session.pane, processes));
    }
    const QString host = bundleID(session.hostBundleID, session.termProgram);
    return host == iterm2 && applications.displayName(host);
}

} // namespace morvane::HostApp
