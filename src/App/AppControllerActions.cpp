#include "App/AppController.h"
#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

// What a person can have done to agents and to this program's place on the machine.

namespace morvane {

namespace {

std::vector<const AgentAdapter *> agentsWhere(const auto &predicate) {
    std::vector<const AgentAdapter *> result;
    std::ranges::copy_if(AgentRegistry::all(), std::back_inserter(result), predicate);
    return result;
}

constexpr QLatin1String scriptFolderName("~/.morvane");

QString couldNotRemove(const QString &what, const QString &why) {
    const QString item = QStringLiteral("⚠︎ could not remove ") + what;
    return why.isEmpty() ? item : item + QLatin1String(": ") + why;
}

/// None when there is nothing to remove.
std::optional<QString> removeScriptFolder() {
    const QFileInfo folder(ForwarderScripts::folder());
    if (!folder.exists() && !folder.isSymLink()) {
        return std::nullopt;
    }
    const bool removed = folder.isSymLink() || !folder.isDir()
                             ? QFile::remove(folder.filePath())
                             : QDir(folder.filePath()).removeRecursively();
    return removed ? scriptFolderName : couldNotRemove(scriptFolderName, {});
}

} // namespace

HookInstaller AppController::makeInstaller(const AgentAdapter &adapter) const {
    return {adapter, m_settings, m_server ? m_server->boundPort() : m_settings.port()};
}

std::vector<const AgentAdapter *> AppController::connectedAgents() const {
    return agentsWhere(
        [this](const AgentAdapter *adapter) { return makeInstaller(*adapter).isInstalled(); });
}

void AppController::refreshStatus() {
    m_installedAgents.clear();
    for (const AgentAdapter *adapter : connectedAgents()) {
        m_installedAgents.insert(adapter->kind());
    }
    const auto muted = mutableAgents();
    m_notificationsSuppressed =
        !muted.empty() && std::ranges::all_of(muted, [this](const AgentAdapter *adapter) {
            return makeInstaller(*adapter).notificationsSuppressed();
        });
    m_launchAtLogin = m_platform.loginItem->isEnabled();
    m_canFocusWindows = m_platform.windows && m_platform.windows->canFocusWindows();
    m_statusLineBlockedAgents.clear();
    for (const AgentAdapter *adapter : AgentRegistry::all()) {
        if (adapter->statusLineFeed() &&
            makeInstaller(*adapter).health().statusLine == StatusLineHealth::ownedByOther) {
            m_statusLineBlockedAgents.push_back(adapter->kind());
        }
    }
    emit statusChanged();
}

/// An agent stays listed after its folder is gone, so that it can be disconnected.
std::vector<const AgentAdapter *> AppController::offeredAgents() const {
    return agentsWhere([this](const AgentAdapter *adapter) {
        return adapter->isPresent() || m_installedAgents.contains(adapter->kind());
    });
}

std::vector<const AgentAdapter *> AppController::mutableAgents() const {
    return agentsWhere([](const AgentAdapter *adapter) {
        return adapter->notificationMute() && adapter->isPresent();
    });
}

bool AppController::hasDecidableAgent() const {
    return std::ranges::any_of(AgentRegistry::all(), [this](const AgentAdapter *adapter) {
        return adapter->supportsDecisions() && m_installedAgents.contains(adapter->kind());
    });
}

void AppController::installHooks(AgentKind kind) {
    perform(kind, "connect", &HookInstaller::install);
}

void AppController::uninstallHooks(AgentKind kind) {
    perform(kind, "disconnect", &HookInstaller::uninstall);
}

void AppController::repairHooks(AgentKind kind) {
    perform(kind, "repair", &HookInstaller::install);
}

void AppController::perform(AgentKind kind, const char *action,
                            std::optional<Failure> (HookInstaller::*operation)() const) {
    const HookInstaller installer = makeInstaller(AgentRegistry::adapter(kind));
    if (const auto failure = (installer.*operation)()) {
        setLastError(QStringLiteral("%1 %2 failed: %3")
                         .arg(displayName(kind), QLatin1String(action), failure->message));
    } else {
        setLastError(std::nullopt);
    }
    refreshStatus();
}

void AppController::setApprovalsEnabled(bool enabled) {
    m_settings.setApprovalsEnabled(enabled);
    if (!enabled && m_server) {
        // Agents must not wait for a panel that has stopped answering.
        m_server->releaseAllDecisions();
    }
    for (const AgentAdapter *adapter : connectedAgents()) {
        if (!adapter->supportsDecisions()) {
            continue;
        }
        if (const auto failure = makeInstaller(*adapter).install()) {
            setLastError(QStringLiteral("Couldn't update %1's hooks: %2")
                             .arg(displayName(adapter->kind()), failure->message));
            m_settings.setApprovalsEnabled(false);
        }
    }
    refreshStatus();
}

void AppController::setNotificationsSuppressed(bool suppressed) {
    m_notificationsSuppressed = suppressed;
    emit statusChanged();
    for (const AgentAdapter *adapter : mutableAgents()) {
        if (const auto failure = makeInstaller(*adapter).setNotificationsSuppressed(suppressed)) {
            setLastError(QStringLiteral("Updating %1's settings failed: %2")
                             .arg(displayName(adapter->kind()), failure->message));
        }
    }
    refreshStatus();
}

void AppController::setLaunchAtLogin(bool enabled) {
    LoginItem &item = *m_platform.loginItem;
    if (const auto failure = enabled ? item.registerItem() : item.unregisterItem()) {
        setLastError(QLatin1String("Launch-at-login change failed: ") + *failure);
    }
    refreshStatus();
}

void AppController::select(const Session &session) {
    m_store.acknowledge(session.id);
    dismissPanels();
}

void AppController::reopenCompleted(const CompletedRecord &record) {
    dismissPanels();
    m_store.removeSessions(record.cwd);
}

void AppController::dismissPanels() {
    if (m_presenterManager) {
        m_presenterManager->dismissAll();
    }
}

QString AppController::removeEverything() {
    QStringList report;
    bool isStillCalled = false;
    for (const AgentAdapter *adapter : connectedAgents()) {
        const QString name = displayName(adapter->kind()) + QLatin1String(" hooks");
        const auto failure = makeInstaller(*adapter).uninstall();
        isStillCalled = isStillCalled || failure;
        report << (failure ? couldNotRemove(name, failure->message) : name);
    }
    if (isStillCalled) {
        // Each of the hooks that are left would be an error in its agent.
        report << couldNotRemove(scriptFolderName, QStringLiteral("hooks that are left call it"));
    } else if (const auto item = removeScriptFolder()) {
        report << *item;
    }
    if (m_platform.loginItem->isEnabled()) {
        const QString name = QStringLiteral("login item");
        const auto failure = m_platform.loginItem->unregisterItem();
        report << (failure ? couldNotRemove(name, *failure) : name);
    }
    m_store.forgetHistory();
    m_settings.removeStored();
    report << QStringLiteral("preferences and session history");
    refreshStatus();
    return report.join(QStringLiteral("\n• "));
}

} // namespace morvane
