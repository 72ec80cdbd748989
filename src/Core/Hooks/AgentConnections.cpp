#include "Core/Hooks/AgentConnections.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Ground/RegularFile.h"
#include "Core/Hooks/AgentSettingsFile.h"
#include "Core/Hooks/ForwarderScripts.h"
#include "Core/Hooks/HookInstaller.h"
#include "Core/Hooks/HookPlan.h"
#include "Core/Hooks/TomlHookEntries.h"
#include "Core/Settings/MorvaneSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaMethod>

#include <algorithm>

namespace morvane {

namespace {

constexpr Seconds newAgentInterval(1800);

std::vector<const AgentAdapter *> agentsWhere(const auto &predicate) {
    std::vector<const AgentAdapter *> result;
    std::ranges::copy_if(AgentRegistry::all(), std::back_inserter(result), predicate);
    return result;
}

constexpr QLatin1String scriptFolderName("~/.morvane");

/// Why the settings of an agent that doesn't look connected can't be read or understood. None where
/// they can, where there is no file, and where the text doesn't contain `mark`.
std::optional<QString> whyUnknownIn(const AgentAdapter &adapter, const Health &health,
                                    const QByteArray &mark = {}) {
    const QString path = adapter.integrationPath();
    const bool isToml = std::holds_alternative<TomlHooks>(adapter.integration());
    if (!QFileInfo::exists(path) || (health.settingsReadable && !isToml)) {
        return std::nullopt;
    }
    const auto content = RegularFile::whole(path);
    if (!content) {
        return AgentConnections::tr("%1 could not be read").arg(path);
    }
    const bool isUnderstood =
        isToml ? static_cast<bool>(TomlHookEntries::find(*content)) : content->trimmed().isEmpty();
    return !isUnderstood && content->contains(mark)
               ? std::optional(AgentConnections::tr("%1 could not be understood").arg(path))
               : std::nullopt;
}

/// The notice that settings which couldn't be understood, and held `before`, have been replaced;
/// none where they haven't.
std::optional<QString> replacementOf(const QString &path, const QByteArray &before) {
    const AgentSettingsFile file(path);
    const auto copy = file.unreadablePath(before);
    if (!copy || !QFileInfo::exists(*copy) || file.read() == before) {
        return std::nullopt;
    }
    return AgentConnections::tr("%1 could not be understood and has been replaced. What it held is "
                                "in %2")
        .arg(path, *copy);
}

QString returnNotifications(const HookInstaller &installer, const QString &agent) {
    const QString name = AgentConnections::tr("suppression of %1's own notifications").arg(agent);
    const auto returned = installer.returnNotifications();
    return returned ? name : AgentConnections::couldNotRemove(name, returned.error().message);
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
    return removed ? scriptFolderName : AgentConnections::couldNotRemove(scriptFolderName);
}

} // namespace

AgentConnections::AgentConnections(MorvaneSettings &settings, Scheduler &scheduler)
    : m_settings(settings), m_scheduler(scheduler) {}

void AgentConnections::setLastError(const std::optional<QString> &error) {
    m_lastError = error;
    if (error) {
        m_outcome.reset();
    }
    emit lastErrorChanged();
}

void AgentConnections::setLastingError(const QString &error) {
    m_lastingError = error;
    setLastError(error);
}

std::optional<QString> AgentConnections::notice() const {
    return m_outcome ? m_outcome : m_lastError ? m_lastError : m_lastingError;
}

/// Where no release can be found, our entries keep their present form: a program started at login
/// may lack the PATH of a shell, and so miss an agent that is installed.
const AgentAdapter &AgentConnections::installedForm(AgentKind kind) const {
    const auto release = m_programs.installed(kind);
    const AgentAdapter &form = AgentRegistry::adapter(kind, release);
    const bool isKnown = release || AgentRegistry::forms(kind).size() == 1;
    const AgentAdapter *present = isKnown ? nullptr : makeInstaller(form)->presentForm();
    return present ? *present : form;
}

std::unique_ptr<HookInstaller> AgentConnections::makeInstaller(const AgentAdapter &form) const {
    return HookInstaller::make(form, m_settings, m_settings.port());
}

std::unique_ptr<HookInstaller> AgentConnections::makeInstaller(AgentKind kind) const {
    return makeInstaller(installedForm(kind));
}

std::vector<const AgentAdapter *> AgentConnections::connectedAgents() const {
    return agentsWhere(
        [this](const AgentAdapter *adapter) { return makeInstaller(*adapter)->isInstalled(); });
}

void AgentConnections::refreshStatus() {
    m_installedAgents.clear();
    m_statusLineBlockedAgents.clear();
    m_health.clear();
    m_whyUnknown.clear();
    for (const AgentAdapter *adapter : AgentRegistry::all()) {
        const AgentKind kind = adapter->kind();
        const Health health = makeInstaller(kind)->health();
        if (health.hooksPresent) {
            m_installedAgents.insert(kind);
        }
        if (health.statusLine == StatusLineHealth::ownedByOther) {
            m_statusLineBlockedAgents.push_back(kind);
        }
        m_health.insert(kind, health);
        const auto why = health.hooksPresent ? std::nullopt : whyUnknownIn(*adapter, health);
        if (why) {
            m_whyUnknown.insert(kind, *why);
        }
    }
    const auto muted = mutableAgents();
    m_notificationsSuppressed =
        !muted.empty() && std::ranges::all_of(muted, [this](const AgentAdapter *adapter) {
            return health(adapter->kind()).notificationsSuppressed;
        });
    emit statusChanged();
}

/// An agent stays listed after its folder is gone, so that it can be disconnected.
std::vector<const AgentAdapter *> AgentConnections::offeredAgents() const {
    return agentsWhere([this](const AgentAdapter *adapter) {
        return adapter->isPresent() || m_installedAgents.contains(adapter->kind());
    });
}

std::vector<const AgentAdapter *> AgentConnections::mutableAgents() const {
    return agentsWhere([](const AgentAdapter *adapter) {
        return adapter->notificationMute() && adapter->isPresent();
    });
}

bool AgentConnections::hasDecidableAgent() const {
    return std::ranges::any_of(AgentRegistry::all(), [this](const AgentAdapter *adapter) {
        return m_installedAgents.contains(adapter->kind()) &&
               installedForm(adapter->kind()).supportsDecisions();
    });
}

void AgentConnections::installHooks(AgentKind kind) {
    perform(installedForm(kind), tr("%1 connect failed: %2"), &HookInstaller::install);
}

void AgentConnections::uninstallHooks(AgentKind kind) {
    perform(installedForm(kind), tr("%1 disconnect failed: %2"), &HookInstaller::uninstall);
}

void AgentConnections::toggleHooks(AgentKind kind) {
    if (m_installedAgents.contains(kind)) {
        uninstallHooks(kind);
    } else {
        installHooks(kind);
    }
}

void AgentConnections::repairHooks(AgentKind kind) {
    perform(installedForm(kind), tr("%1 repair failed: %2"), &HookInstaller::install);
}

void AgentConnections::perform(const AgentAdapter &form, const QString &failed,
                               Result<void> (HookInstaller::*operation)() const) {
    const AgentKind kind = form.kind();
    const QString why = whyUnknown(kind);
    const auto changed = change(form, operation);
    refreshStatus();
    // The settings still aren't understood, so nobody can tell whether anything was left to do.
    if (changed && !why.isEmpty() && why == whyUnknown(kind)) {
        m_outcome = why;
    }
    setLastError(changed ? std::nullopt
                         : std::optional(failed.arg(displayName(kind), changed.error().message)));
}

Result<void>
AgentConnections::change(const AgentAdapter &form,
                         const std::function<Result<void>(const HookInstaller &)> &operation) {
    const QString path = form.integrationPath();
    const auto before = RegularFile::whole(path);
    const auto changed = operation(*makeInstaller(form));
    m_outcome = before && changed ? replacementOf(path, *before) : std::nullopt;
    return changed;
}

void AgentConnections::setNotificationsSuppressed(bool suppressed) {
    m_notificationsSuppressed = suppressed;
    emit statusChanged();
    for (const AgentAdapter *adapter : mutableAgents()) {
        const auto changed = change(*adapter, [=](const HookInstaller &installer) {
            return installer.setNotificationsSuppressed(suppressed);
        });
        if (!changed) {
            setLastError(tr("Updating %1's settings failed: %2")
                             .arg(displayName(adapter->kind()), changed.error().message));
        }
    }
    refreshStatus();
}

void AgentConnections::rewriteDecisionHooks() {
    for (const AgentAdapter *adapter : connectedAgents()) {
        const AgentAdapter &form = installedForm(adapter->kind());
        if (!form.supportsDecisions()) {
            continue;
        }
        if (const auto installed = makeInstaller(form)->install(); !installed) {
            setLastError(tr("Couldn't update %1's hooks: %2")
                             .arg(displayName(adapter->kind()), installed.error().message));
            m_settings.setApprovalsEnabled(false);
        }
    }
    refreshStatus();
}

void AgentConnections::renew() {
    for (const AgentAdapter *adapter : connectedAgents()) {
        makeInstaller(adapter->kind())->renew();
    }
}

void AgentConnections::watchForNewAgents() {
    if (!m_settings.knownAgents()) {
        // The settings are older than this list, and their owner needs no welcome.
        markAllPresentAgentsKnown();
    }
    refreshStatus();
    checkForNewAgents();
    scheduleNewAgentCheck();
}

void AgentConnections::scheduleNewAgentCheck() {
    m_newAgentTimer = m_scheduler.after(newAgentInterval, [this] {
        refreshStatus();
        checkForNewAgents();
        scheduleNewAgentCheck();
    });
}

/// An agent is offered once, whatever the answer; so it only counts as offered when somebody is
/// there to offer it.
void AgentConnections::checkForNewAgents() {
    if (!isSignalConnected(QMetaMethod::fromSignal(&AgentConnections::newAgentsDetected))) {
        return;
    }
    const QStringList known = m_settings.knownAgents().value_or(QStringList());
    std::vector<const AgentAdapter *> unseen = AgentRegistry::present();
    std::erase_if(unseen, [&](const AgentAdapter *adapter) {
        return !adapter->isInstallable() ||
               known.contains(QString::fromLatin1(rawValue(adapter->kind())));
    });
    if (unseen.empty()) {
        return;
    }
    markAgentsKnown(unseen);
    std::vector<AgentKind> kinds;
    std::ranges::transform(unseen, std::back_inserter(kinds), &AgentAdapter::kind);
    emit newAgentsDetected(kinds);
}

void AgentConnections::markAgentsKnown(const std::vector<const AgentAdapter *> &adapters) {
    QStringList known = m_settings.knownAgents().value_or(QStringList());
    for (const AgentAdapter *adapter : adapters) {
        known.append(QString::fromLatin1(rawValue(adapter->kind())));
    }
    known.removeDuplicates();
    m_settings.setKnownAgents(known);
}

void AgentConnections::markAllPresentAgentsKnown() {
    markAgentsKnown(AgentRegistry::present());
}

QString AgentConnections::couldNotRemove(const QString &what, const QString &why) {
    return why.isEmpty() ? tr("⚠︎ could not remove %1").arg(what)
                         : tr("⚠︎ could not remove %1: %2").arg(what, why);
}

QStringList AgentConnections::removeAll() {
    QStringList report;
    for (const AgentAdapter *adapter : AgentRegistry::all()) {
        const auto installer = makeInstaller(adapter->kind());
        if (installer->hasSuppressedNotifications()) {
            report << returnNotifications(*installer, displayName(adapter->kind()));
        }
        const QString name = tr("%1 hooks").arg(displayName(adapter->kind()));
        if (installer->hasTraces()) {
            const auto removed = installer->removeTraces();
            const bool isGone = removed && !installer->hasTraces();
            const QString why = removed ? QString() : removed.error().message;
            report << (isGone ? name : couldNotRemove(name, why));
        } else if (const auto why =
                       whyUnknownIn(*adapter, installer->health(), HookPlan::hookScriptMarker)) {
            report << couldNotRemove(name, *why);
        }
    }
    // Hooks that couldn't be removed now find no script, and their agent goes on without it.
    if (const auto item = removeScriptFolder()) {
        report << *item;
    }
    refreshStatus();
    return report;
}

} // namespace morvane

#include "moc_AgentConnections.cpp"
