#pragma once

#include "Core/Settings/DisplayTargetMode.h"
#include "Platform/Displays.h"
#include "Platform/Task.h"
#include "Presentation/Overlay/MorvanePresenter.h"
#include "Presentation/Overlay/PanelContext.h"

#include <map>
#include <memory>

namespace morvane {

class OverlayWindows;
class PointerMonitor;

/// Keeps one presenter on every display that is wanted, and follows the displays as they come and
/// go. Owned by `AppController`; main thread.
class PresenterManager : public QObject {
    Q_OBJECT

public:
    PresenterManager(PanelContext context, Displays &displays, OverlayWindows &overlays,
                     PointerMonitor &pointer);
    ~PresenterManager() override;

    // Answered by the panel that is open, on whichever display.
    bool hasBeenRead(const QString &sessionID) const;
    std::optional<CompletedRecord> recordAt(int digit) const;

    /// Makes the presenters; called once.
    void start();

    /// Opens the panel on the display with the pointer, or on another if that one has no presenter.
    void presentPanel();

    /// Does the same, and puts the keyboard into the panel.
    void presentPanelToKeys();

    /// What a right click on any presenter opens. Not owned.
    void setContextMenu(QMenu *menu);

    /// How far all capsules, also later ones, make up for a tray.
    void setStandIn(StandIn standIn);

    void collapseAllExpanded();
    void dismissAll();

signals:
    /// A panel opens or closes, on whichever display.
    void expandedChanged(bool isExpanded);

    /// Whether any display has a place for Morvane has changed. None has if the display mode fits
    /// no display, or the only one that it fits has lost its notch.
    void shownChanged(bool isShown);

private:
    void announce(const QString &sessionID);
    void scheduleReconcile();
    void reconcile();
    MorvanePresenter *presenterAtPointer() const;
    bool isWanted(const Display &display) const;
    std::unique_ptr<MorvanePresenter> makePresenter(const Display &display);
    std::unique_ptr<MorvanePresenter> makeKind(const Display &display);

    const PanelContext m_context;
    Displays &m_displays;
    OverlayWindows &m_overlays;
    PointerMonitor &m_pointer;
    DisplayTargetMode m_displayMode{};
    std::map<std::uint32_t, std::unique_ptr<MorvanePresenter>> m_presenters; ///< by display
    QPointer<QMenu> m_contextMenu;
    StandIn m_standIn = StandIn::none;
    bool m_isShown = true; ///< as last reported
    Task m_reconcileWork;
};

} // namespace morvane
