#include "Core/Navigation/TerminalReply.h"

#include "Core/Navigation/HostApp.h"
#include "Core/Navigation/PaneFocus.h"
#include "Core/Sessions/Session.h"
#include "Platform/Scheduler.h"
#include "Platform/Scripting.h"

#include <QPointer>
#include <QSet>

#include <algorithm>

namespace morvane {

namespace {

/// In UTF-16 units; tmux takes no command of 16 KiB or more.
constexpr qsizetype longestArgument = 4096;

/// Codex and Gemini CLI take an Enter right behind the text for a line feed in it.
constexpr Seconds beforeEnter(0.3);

const QString buffer = QStringLiteral("morvane-reply");

/// Splits the text into pieces that tmux accepts, never within a surrogate pair.
QStringList pieces(const QString &text) {
    QStringList result;
    for (qsizetype from = 0; from < text.size();) {
        qsizetype length = std::min(longestArgument, text.size() - from);
        if (from + length < text.size() && text[from + length].isLowSurrogate()) {
            --length;
        }
        result << text.mid(from, length);
        from += length;
    }
    return result;
}

bool isControl(QChar character) {
    return character.category() == QChar::Other_Control;
}

/// Appends the text as an argument, behind "--" if it could be taken for an option.
QStringList literally(QStringList command, const QString &text) {
    if (text.startsWith(QLatin1Char('-'))) {
        command << QStringLiteral("--");
    }
    return command << text;
}

/// The program is named as tmux does it, by its first argument.
bool isShell(const QString &program) {
    static const QSet<QString> shells{
        QStringLiteral("sh"),   QStringLiteral("ash"),  QStringLiteral("bash"),
        QStringLiteral("csh"),  QStringLiteral("dash"), QStringLiteral("elvish"),
        QStringLiteral("fish"), QStringLiteral("ksh"),  QStringLiteral("mksh"),
        QStringLiteral("nu"),   QStringLiteral("pwsh"), QStringLiteral("rbash"),
        QStringLiteral("tcsh"), QStringLiteral("zsh"),
    };
    return shells.contains(program);
}

} // namespace

QString TerminalReply::typable(const QString &text) {
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    result.removeIf([](QChar character) {
        return isControl(character) && character != QLatin1Char('\n') &&
               character != QLatin1Char('\t');
    });
    return result.trimmed();
}

QList<QStringList> TerminalReply::typing(const QString &text, const QString &pane) {
    const QStringList to{QStringLiteral("-t"), pane};
    const QString sendKeys = QStringLiteral("send-keys");
    // While somebody scrolls back in the pane, tmux takes its keys for commands.
    QList<QStringList> result{QStringList{QStringLiteral("copy-mode"), QStringLiteral("-q")} + to};
    if (std::ranges::none_of(text, &isControl)) {
        for (const QString &piece : pieces(text)) {
            result << literally(QStringList(sendKeys) + to + QStringList(QStringLiteral("-l")),
                                piece);
        }
    } else {
        // Typed, a line feed would submit the first line; pasted, it is part of the text.
        QStringList setBuffer{QStringLiteral("set-buffer"), QStringLiteral("-b"), buffer};
        for (const QString &piece : pieces(text)) {
            result << literally(setBuffer, piece);
            setBuffer = {QStringLiteral("set-buffer"), QStringLiteral("-a"), QStringLiteral("-b"),
                         buffer};
        }
        result << QStringList{QStringLiteral("paste-buffer"), QStringLiteral("-d"),
                              QStringLiteral("-p"),           QStringLiteral("-r"),
                              QStringLiteral("-b"),           buffer} +
                      to;
    }
    result << QStringList(sendKeys) + to + QStringList(QStringLiteral("Enter"));
    return result;
}

QString TerminalReply::script(const QString &text, const QString &uuid) {
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QStringLiteral(R"(tell application "iTerm2"
  repeat with w in windows
    repeat with t in tabs of w
      repeat with s in sessions of t
        if (unique id of s) is "%1" then
          tell s to write text "%2"
          return
        end if
      end repeat
    end repeat
  end repeat
end tell)")
        .arg(uuid, escaped);
}

void TerminalReply::send(const QString &text, const Session &session, const IsWanted &isWanted,
                         const Told &told) {
    const QString typed = typable(text);
    const auto &pane = session.pane;
    const auto uuid = HostApp::itermUUID(session.itermSessionID);
    if (!typed.isEmpty() && session.ttyName && PaneFocus::hasTmuxPane(pane, m_processes)) {
        m_replies.push_back(
            {pane, *session.ttyName, session.process, typing(typed, *pane.tmux), isWanted, told});
        if (m_replies.size() == 1) {
            begin();
        }
    } else if (!typed.isEmpty() && !pane.tmux && uuid &&
               HostApp::bundleID(session.hostBundleID, session.termProgram) == HostApp::iterm2) {
        sendViaITerm(typed, *uuid, told);
    } else {
        told(false);
    }
}

void TerminalReply::sendViaITerm(const QString &text, const QString &uuid, const Told &told) {
    m_scripting.run(script(text, uuid), [told](const std::optional<QString> &) { told(true); });
}

/// A shell in the foreground may be one that the agent has started and waits for.
void TerminalReply::begin() {
    const auto seen = [weak = QPointer<TerminalReply>(this)](const QString &tty,
                                                             const QString &program) {
        if (weak) {
            const Reply &reply = weak->m_replies.front();
            const auto hears =
                reply.agent ? weak->m_processes.hearsKeys(*reply.agent) : std::nullopt;
            weak->stepDone(tty == reply.tty && hears.value_or(!isShell(program)));
        }
    };
    // A copy, since the reply ends at once if tmux isn't installed.
    const PaneLocator pane = m_replies.front().pane;
    PaneFocus::look(pane, m_tools, seen);
}

void TerminalReply::runNext() {
    if (!m_replies.front().isWanted()) {
        stepDone(false);
        return;
    }
    const QStringList command = m_replies.front().commands.takeFirst();
    const PaneLocator pane = m_replies.front().pane;
    const auto finished = [weak = QPointer<TerminalReply>(this)](const auto &output) {
        if (weak) {
            weak->stepDone(output.has_value());
        }
    };
    PaneFocus::run(QStringLiteral("tmux"), PaneFocus::tmuxArguments(pane, command), pane, m_tools,
                   finished);
}

/// A text that hasn't been typed completely is not submitted.
void TerminalReply::stepDone(bool succeeded) {
    const qsizetype left = m_replies.front().commands.size();
    if (succeeded && left > 0) {
        m_next = m_scheduler.after(left == 1 ? beforeEnter : Seconds(0), [this] { runNext(); });
        return;
    }
    const Told told = m_replies.front().told;
    m_replies.pop_front();
    if (!m_replies.empty()) {
        begin();
    }
    told(succeeded);
}

} // namespace morvane

#include "moc_TerminalReply.cpp"
