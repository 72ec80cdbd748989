#pragma once

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/LenientJson.h"
#include "Support/CoreWorld.h"
#include "Support/Printing.h"

#include <nlohmann/json.hpp>

#include <string>

namespace morvane {

/// Connects agents in a home folder of the test's own.
class InstallerFixture : public testing::Test, protected CoreWorld {
protected:
    using json = nlohmann::json;

    std::unique_ptr<HookInstaller> installer(AgentKind kind, std::uint16_t port = 40123) const {
        return HookInstaller::make(AgentRegistry::adapter(kind), settings, port, moment);
    }

    static std::string failure(const Result<void> &result) {
        return result ? "" : result.error().message.toStdString();
    }

    void connect(AgentKind kind) const { EXPECT_EQ(failure(installer(kind)->install()), ""); }
    void disconnect(AgentKind kind) const { EXPECT_EQ(failure(installer(kind)->uninstall()), ""); }

    /// Connects again after the person has switched approvals on or off.
    void reconnect(AgentKind kind) {
        settings.setApprovalsEnabled(!settings.approvalsEnabled());
        connect(kind);
    }

    QStringList issues(AgentKind kind) const { return installer(kind)->health().issues(); }

    /// Where the agent keeps what we write, under the home folder.
    QString place(AgentKind kind) const {
        return AgentRegistry::adapter(kind).integrationDescription().mid(2);
    }

    QDir folder(AgentKind kind) const { return QFileInfo(home.path(place(kind))).dir(); }

    QByteArray text(AgentKind kind) const { return home.read(place(kind)); }
    QByteArray backup(AgentKind kind) const { return home.read(place(kind) + ".morvane-backup"); }
    QByteArray original(AgentKind kind) const {
        return home.read(place(kind) + ".morvane-original");
    }
    void write(AgentKind kind, const QByteArray &text) const { home.write(place(kind), text); }

    json root(AgentKind kind) const { return LenientJson::parse(text(kind)).value_or(json()); }

    /// A value in whose text OURS stands for our folder.
    json value(QByteArray text) const {
        return json::parse(text.replace("OURS", home.path().toUtf8() + "/.morvane").toStdString());
    }

    std::function<void()> moment = [] {}; ///< runs instead of the wait before a second look
};

} // namespace morvane
