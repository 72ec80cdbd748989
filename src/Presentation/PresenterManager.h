#pragma once

#include "Core/DisplayTargetMode.h"
#include "Core/Session.h"
#include "Platform/Displays.h"
#include "Platform/Scheduler.h"
#include "Presentation/MorvanePresenter.h"

#include <map>
#include <memory>

namespace morvane {

class MorvaneSettings;
class OverlayWindows;
class SessionStore;

/// Keeps one presenter on every display that is wanted, and follows the displays as they come and
/// go. Owned by `AppController`; main thread.
class PresenterManager : public QObject {
    Q_OBJECT

public:
    PresenterManager(SessionStore &store, MorvaneSettings &settings, Displays &displays,
                     OverlayWindows &overlays, Scheduler &scheduler);
    ~PresenterManager() override;

    /// Told when the person picks a session. Set before `start`.
    std::function<void(const Session &)> onSelect;

    /// Told when a panel opens or closes, on whichever display.
    std::function<void(bool)> onExpandedChanged;

    /// Puts the presenters up; once.
    void start();

    /// Opens the panel on the display that has the pointer, or on another where that has none.
    void presentPanel();

    /// What a right click on any presenter opens. Not owned.
    void setContextMenu(QMenu *menu);

    void collapseAllExpanded();
    void dismissAll();

private:
    void scheduleReconcile();
    void reconcile();
    bool isWanted(const Display &display) const;
    std::unique_ptr<MorvanePresenter> makePresenter(const Display &display);

    SessionStore &m_store;
    MorvaneSettings &m_settings;
    Displays &m_displays;
    OverlayWindows &m_overlays;
    Scheduler &m_scheduler;
    DisplayTargetMode m_displayMode{};
    std::map<std::uint32_t, std::unique_ptr<MorvanePresenter>> m_presenters; ///< by display
    QPointer<QMenu> m_contextMenu;
    Task m_reconcileWork;
};

} // namespace morvane
