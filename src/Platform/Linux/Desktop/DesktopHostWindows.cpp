#include "Platform/Linux/Desktop/DesktopHostWindows.h"

#include "Platform/BackgroundPool.h"
#include "Platform/Linux/Desktop/DesktopEntry.h"
#include "Platform/Linux/Desktop/DesktopLauncher.h"
#include "Platform/Linux/Desktop/KnownApplications.h"
#include "Platform/Linux/TerminalProcesses.h"

#include <algorithm>

namespace morvane {

namespace {

/// The names that the application's windows may have for it.
QStringList namesOf(const QString &bundleID) {
    QStringList result = KnownApplications::windowClasses(bundleID);
    result.append(bundleID);
    for (const QString &id : KnownApplications::desktopEntryIDs(bundleID)) {
        result.append(id);
        const auto entry = DesktopEntry::pathOf(id);
        if (const auto name = entry ? DesktopEntry::value(*entry, QLatin1String("StartupWMClass"))
                                    : std::nullopt) {
            result.append(*name);
        }
    }
    result.removeAll(QString());
    return result;
}

/// The windows of the shell's nearest ancestor that has any.
QList<WindowSystem::Window> windowsAround(const TerminalProcesses &processes,
                                          const QList<WindowSystem::Window> &windows) {
    QList<WindowSystem::Window> result;
    for (const TerminalProcesses::Process &ancestor : processes.ancestors) {
        std::ranges::copy_if(windows, std::back_inserter(result),
                             [&](const auto &window) { return window.process == ancestor.id; });
        if (!result.isEmpty()) {
            break;
        }
    }
    return result;
}

/// True if a server for remote logins is among the ancestors; OpenSSH has several programs for it.
bool isRemoteLogin(const TerminalProcesses &processes) {
    return std::ranges::any_of(processes.ancestors, [](const auto &ancestor) {
        return ancestor.name.startsWith("sshd") || ancestor.name == "mosh-server" ||
               ancestor.name == "dropbear";
    });
}

/// Some terminals append their own name to the tab's title.
bool isTitled(const WindowSystem::Window &window, const QString &tab) {
    return window.title == tab || window.title.startsWith(tab + QStringLiteral(" — "));
}

/// The id of the only window for which the condition holds; empty if there are none or several.
template <typename Condition>
QString onlyOne(const QList<WindowSystem::Window> &windows, Condition condition) {
    const auto first = std::ranges::find_if(windows, condition);
    return std::ranges::count_if(windows, condition) == 1 ? first->id : QString();
}

} // namespace

DesktopHostWindows::DesktopHostWindows(std::unique_ptr<WindowSystem> windows,
                                       const QDBusConnection &bus, BackgroundPool &pool,
                                       Scheduler &scheduler)
    : m_windows(std::move(windows)), m_tabs(bus), m_pool(pool), m_scheduler(scheduler) {}

void DesktopHostWindows::find(const QString &bundleID, Found found) {
    m_windows->list([bundleID, found = std::move(found)](const auto &listing) {
        const QStringList names = namesOf(bundleID);
        QList<HostWindow> result;
        for (const WindowSystem::Window &window : listing.windows) {
            if (std::ranges::any_of(window.names, [&](const QString &name) {
                    return names.contains(name, Qt::CaseInsensitive);
                })) {
                result.append({window.id, window.title});
            }
        }
        found(result.isEmpty() && !listing.isWhole ? std::nullopt : std::optional(result));
    });
}

void DesktopHostWindows::activate(const HostWindow &window) {
    m_windows->activate(window.id);
}

void DesktopHostWindows::launch(const QString &bundleID) {
    m_windows->prepareLaunch(
        [bundleID](const QString &startupID) { DesktopLauncher::launch(bundleID, startupID); });
}

void DesktopHostWindows::showTerminal(const TerminalDevice &terminal, Shown shown) {
    const auto look = [path = terminal.path, process = terminal.process] {
        return TerminalProcesses::of(path, process);
    };
    m_pool.compute(look, m_scheduler, &m_context,
                   [this, knownAt = terminal.knownAt,
                    shown = std::move(shown)](const TerminalProcesses &processes) {
                       if (processes.openedAt > knownAt) {
                           shown(Showing::unknown);
                           return;
                       }
                       m_tabs.select(processes, [this, processes, shown](const auto &tab) {
                           showWindow(processes, tab, shown);
                       });
                   });
}

/// If the program has one window, that is it. Of several, the terminal names one, now or when it
/// started the shell; without that, none is activated rather than a guess.
void DesktopHostWindows::showWindow(const TerminalProcesses &processes,
                                    const TerminalTabs::Outcome &tab, const Shown &shown) {
    m_windows->list([this, processes, tab, shown](const auto &listing) {
        const auto around = windowsAround(processes, listing.windows);
        QString id = onlyOne(around, [](const auto &) { return true; });
        if (id.isEmpty()) {
            id = onlyOne(around, [&](const auto &window) {
                return tab.title.isEmpty() ? window.id == tab.windowID
                                           : isTitled(window, tab.title);
            });
        }
        if (!id.isEmpty()) {
            m_windows->activate(id);
        }
        if (!id.isEmpty() || tab.isShown) {
            shown(Showing::shown);
        } else if (!around.isEmpty()) {
            shown(Showing::amongSeveral);
        } else {
            shown(isRemoteLogin(processes) ? Showing::elsewhere : Showing::unknown);
        }
    });
}

} // namespace morvane
