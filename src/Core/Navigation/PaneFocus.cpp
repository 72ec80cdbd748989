#include "Core/Navigation/PaneFocus.h"

#include "Core/Ground/ToolPaths.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <functional>

namespace morvane::PaneFocus {

namespace {

const QString tmux = QStringLiteral("tmux");

/// The tmux server's process id, which TMUX in the environment names after the socket; 0 if none.
std::int64_t serverProcess(const PaneLocator &pane) {
    return pane.tmuxServer.value_or(QString()).section(QLatin1Char(','), 1, 1).toLongLong();
}

QProcessEnvironment environmentFor(const QString &tool, const PaneLocator &pane) {
    QProcessEnvironment result;
    if (tool == u"kitty" && pane.kittyListenOn) {
        result.insert(QStringLiteral("KITTY_LISTEN_ON"), *pane.kittyListenOn);
    } else if (tool == u"wezterm" && pane.weztermSocket) {
        result.insert(QStringLiteral("WEZTERM_UNIX_SOCKET"), *pane.weztermSocket);
    }
    return result;
}

/// What a tmux client shows.
struct View {
    qlonglong usedAt = 0;
    QString pane;
    Client client;
};

const QString viewFormat =
    QStringLiteral("#{client_activity} #{pane_id} #{client_pid} #{client_tty}");

/// Parses tmux's list in `viewFormat`; the most recently used client comes first, and clients
/// without a terminal are left out.
QList<View> viewsIn(const QString &list) {
    QList<View> result;
    for (const QString &line : list.split(QLatin1Char('\n'))) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (const QString tty = words.value(3); !tty.isEmpty()) {
            result.append({words[0].toLongLong(), words[1], {tty, words[2].toLongLong()}});
        }
    }
    std::ranges::stable_sort(result, std::greater(), &View::usedAt);
    return result;
}

} // namespace

void run(const QString &tool, const QStringList &arguments, const PaneLocator &pane, Tools &tools,
         const Tools::Finished &finished) {
    if (const auto program = ToolPaths::find(tool)) {
        tools.run({*program, arguments, environmentFor(tool, pane)}, finished);
    } else {
        finished(std::nullopt);
    }
}

/// tmux takes a ";" at the end of an argument for the end of a command.
QStringList tmuxArguments(const PaneLocator &pane, const QStringList &command) {
    QStringList result;
    if (const auto socket = pane.tmuxSocket()) {
        result << QStringLiteral("-S") << *socket;
    }
    for (QString argument : command) {
        if (argument.endsWith(QLatin1Char(';'))) {
            argument.insert(argument.size() - 1, QLatin1Char('\\'));
        }
        result << argument;
    }
    return result;
}

bool hasTmuxPane(const PaneLocator &pane, const Processes &processes) {
    if (!pane.tmux || !ToolPaths::find(tmux)) {
        return false;
    }
    const auto socket = pane.tmuxSocket();
    if (!socket) {
        return true;
    }
    const auto listener = processes.listenerAt(*socket);
    const std::int64_t reported = serverProcess(pane);
    return listener && (*listener == 0 || reported == 0 || *listener == reported);
}

bool mayRunInTmuxPane(const ProcessIdentity &process, const PaneLocator &pane,
                      const Processes &processes) {
    const std::int64_t server = serverProcess(pane);
    return server == 0 || processes.terminalOpener(process).value_or(server) == server;
}

void look(const PaneLocator &pane, Tools &tools,
          const std::function<void(const QString &tty, const QString &program)> &then) {
    const QStringList question{QStringLiteral("display-message"), QStringLiteral("-p"),
                               QStringLiteral("-t"), pane.tmux.value_or(QString()),
                               QStringLiteral("#{pane_tty} #{pane_current_command}")};
    run(tmux, tmuxArguments(pane, question), pane, tools,
        [then](const std::optional<QByteArray> &output) {
            const QString line = QString::fromUtf8(output.value_or(QByteArray())).trimmed();
            then(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1));
        });
}

void focusMultiplexer(const PaneLocator &pane, Tools &tools,
                      const std::function<void(const std::optional<Client> &)> &then) {
    const auto command = [pane, &tools](const QStringList &words, const Tools::Finished &finished) {
        run(tmux, tmuxArguments(pane, words), pane, tools, finished);
    };
    const auto takeClients = [=](const std::optional<QByteArray> &output) {
        const auto views = viewsIn(QString::fromUtf8(output.value_or(QByteArray())));
        const auto showing = std::ranges::find(views, *pane.tmux, &View::pane);
        if (showing != views.end() || views.size() != 1) {
            then(showing != views.end() ? std::optional(showing->client) : std::nullopt);
            return;
        }
        const Client only = views.first().client;
        command({QStringLiteral("switch-client"), QStringLiteral("-c"), only.tty,
                 QStringLiteral("-t"), *pane.tmux},
                [=](const std::optional<QByteArray> &switched) {
                    then(switched ? std::optional(only) : std::nullopt);
                });
    };
    const auto findClient = [=](const std::optional<QByteArray> &selected) {
        // A server that doesn't answer has been waited for long enough.
        if (!selected) {
            then(std::nullopt);
            return;
        }
        command({QStringLiteral("list-clients"), QStringLiteral("-F"), viewFormat}, takeClients);
    };
    const auto selectPane = [=](const std::optional<QByteArray> &) {
        command({QStringLiteral("select-pane"), QStringLiteral("-t"), *pane.tmux}, findClient);
    };
    command({QStringLiteral("select-window"), QStringLiteral("-t"), *pane.tmux}, selectPane);
}

void focusTerminal(const PaneLocator &pane, Tools &tools) {
    const auto start = [&](const QString &tool, const QStringList &arguments) {
        run(tool, arguments, pane, tools, [](const std::optional<QByteArray> &) {});
    };
    if (pane.wezterm) {
        start(QStringLiteral("wezterm"), {QStringLiteral("cli"), QStringLiteral("activate-pane"),
                                          QStringLiteral("--pane-id"), *pane.wezterm});
    } else if (pane.kitty) {
        start(QStringLiteral("kitty"),
              {QStringLiteral("@"), QStringLiteral("focus-window"), QStringLiteral("--match"),
               QStringLiteral("id:") + *pane.kitty});
    } else if (pane.orca) {
        start(QStringLiteral("orca"), {QStringLiteral("terminal"), QStringLiteral("switch"),
                                       QStringLiteral("--terminal"), *pane.orca});
    }
}

} // namespace morvane::PaneFocus
