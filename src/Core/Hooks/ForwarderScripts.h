#pragma once

#include "Platform/Result.h"

#include <QCoreApplication>
#include <QString>

#include <cstdint>

namespace morvane {

/// What the agents run to reach the event server: scripts made of templates, and the client that
/// they prefer to curl. A value; synchronous, main thread.
class ForwarderScripts {
    Q_DECLARE_TR_FUNCTIONS(ForwarderScripts)

public:
    /// `port` is the port that the server really has.
    ForwarderScripts(QString token, std::uint16_t port);

    /// The folder under the home folder that the scripts lie in; only its owner may enter.
    static QString folder();

    static bool isHookScriptExecutable();
    static bool isStatusLineScriptExecutable();

    /// Writes `hook.sh`, and the client beside it where there is one for this machine's processor.
    Result<void> writeHookScript() const;

    /// Writes `statusline.sh`.
    Result<void> writeStatusLineScript() const;

    /// Removes `statusline.sh`. Best effort.
    static void removeStatusLineScript();

    /// The text of a template, with the port and the token in it.
    Result<QString> renderTemplate(const QString &name) const;

private:
    Result<void> writeScript(const QString &name) const;

    QString m_token;
    std::uint16_t m_port;
};

} // namespace morvane
