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

/// Programs that host sessions, found by what their windows call them, over the desktop's way to
/// windows. Owned by the application; the pool and the scheduler must outlive it.
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
    QObject m_context; ///< with it go the answers that are still to come
};

} // namespace morvane
