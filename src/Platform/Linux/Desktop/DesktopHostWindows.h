#pragma once

#include "Platform/HostWindows.h"
#include "Platform/Linux/Desktop/TerminalTabs.h"
#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QObject>

#include <memory>

namespace morvane {

class BackgroundPool;
class Scheduler;
struct TerminalProcesses;

/// Finds programs that host sessions by the names on their windows, through the desktop's window
/// system. Owned by the application; the pool and the scheduler must outlive it.
class DesktopHostWindows : public HostWindows {
public:
    DesktopHostWindows(std::unique_ptr<WindowSystem> windows, const QDBusConnection &bus,
                       BackgroundPool &pool, Scheduler &scheduler);

    bool canFocusWindows() const override { return m_windows->canFocusWindows(); }
    void find(const QString &bundleID, Found found) override;
    void activate(const HostWindow &window) override;
    void launch(const QString &bundleID) override;
    void showTerminal(const TerminalDevice &terminal, Shown shown) override;

private:
    void showWindow(const TerminalProcesses &processes, const TerminalTabs::Outcome &tab,
                    const Shown &shown);

    std::unique_ptr<WindowSystem> m_windows;
    TerminalTabs m_tabs;
    BackgroundPool &m_pool;
    Scheduler &m_scheduler;
    QObject m_context; ///< its destruction drops pending answers
};

} // namespace morvane
