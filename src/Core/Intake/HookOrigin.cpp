#include "Core/Intake/HookOrigin.h"

#include "Core/Intake/HttpRequest.h"

#include <QStringList>

namespace morvane {

namespace {

std::optional<QString> hint(const HttpRequest &request, HttpHeader header) {
    const QString text = request.text(header);
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

/// The three numbers of a `ProcessIdentity`, in its order and separated by blanks.
std::optional<ProcessIdentity> processIn(const QString &text) {
    const QStringList parts = text.split(u' ');
    bool isIdentity = parts.size() == 3;
    const auto number = [&](qsizetype part) {
        bool isNumber = false;
        const qulonglong result = parts.value(part).toULongLong(&isNumber);
        isIdentity = isIdentity && isNumber;
        return result;
    };
    const ProcessIdentity process{static_cast<std::int64_t>(number(0)), number(1), number(2)};
    constexpr std::int64_t highestID = 1 << 22; // the kernel's own bound
    return isIdentity && process.id > 1 && process.id <= highestID ? std::optional(process)
                                                                   : std::nullopt;
}

} // namespace

HookOrigin HookOrigin::of(const HttpRequest &request) {
    HookOrigin origin;
    origin.itermSessionID = hint(request, HttpHeader::itermSession);
    origin.termProgram = hint(request, HttpHeader::termProgram);
    origin.hostBundleID = hint(request, HttpHeader::hostBundle);
    origin.ttyName = hint(request, HttpHeader::tty);
    origin.pane.tmux = hint(request, HttpHeader::tmuxPane);
    origin.pane.tmuxServer = hint(request, HttpHeader::tmuxServer);
    origin.pane.wezterm = hint(request, HttpHeader::weztermPane);
    origin.pane.kitty = hint(request, HttpHeader::kittyWindow);
    origin.pane.zellij = hint(request, HttpHeader::zellijSession);
    origin.pane.orca = hint(request, HttpHeader::orcaTerminal);
    origin.pane.kittyListenOn = hint(request, HttpHeader::kittyListenOn);
    origin.pane.weztermSocket = hint(request, HttpHeader::weztermSocket);
    origin.process = processIn(request.text(HttpHeader::process));
    return origin;
}

} // namespace morvane
