#pragma once

#include "Platform/OverlayWindow.h"
#include "Presentation/Notch/BuiltInNotchSurface.h"
#include "Presentation/Notch/NotchHover.h"
#include "Presentation/Overlay/MorvanePresenter.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Style/Animation.h"

#include <memory>
#include <optional>

namespace morvane {

class BuiltInNotchSurface;
class OverlayWindows;
class PointerMonitor;

/// Shows Morvane around the notch of a display: the status beside it, and the panel below it while
/// the pointer rests there. `NotchHover` decides about opening and closing; this carries it out.
/// The window exists only while there is something to show.
class NotchPresenter : public QObject, public MorvanePresenter {
    Q_OBJECT

public:
    NotchPresenter(const PanelContext &context, Displays &displays, OverlayWindows &overlays,
                   PointerMonitor &pointer);
    ~NotchPresenter() override;

    void attach(const Display &display) override;
    void presentPanel() override;
    void collapseExpanded() override;
    void dismiss() override;
    void detach() override;

private:
    void subscribe();
    void scheduleUpdate();
    void startHoverMonitoring();
    void stopHoverMonitoring();

    bool hasNotch() const;
    bool shouldBeVisible() const;
    void updateVisibility();
    void applyCollectionBehaviour();
    void makePanel();
    void connectPanel();
    void layoutPanel();
    void layOutSurface();
    void fadeIn();
    void destroyNotch();

    void pollHover();
    void scheduleHoverCheck(Seconds delay);
    bool isPointerInside();
    void open();
    void close();
    void endPresentation();
    void setMode(BuiltInNotchState::Mode mode);
    void reportExpanded(bool isExpanded);
    Motion motion() const;

    void openMenu(const QPoint &position);
    void menuClosed();
    bool isMenuOpen() const;
    bool isHeld() const;

    const PanelContext m_context;
    Displays &m_displays;
    OverlayWindows &m_overlays;
    PointerMonitor &m_pointer;
    std::optional<Display> m_display;
    BuiltInNotchState m_surfaceState;

    // The window is taken down before the surface that it shows.
    std::unique_ptr<BuiltInNotchSurface> m_surface;
    std::unique_ptr<BuiltInNotchSurface>
        m_retiredSurface; ///< one of its clicks may have retired it
    std::unique_ptr<OverlayWindow> m_window;
    Animation m_fade; ///< of the window, in

    bool m_isAttached = false;
    NotchHover m_hover;
    bool m_reportedExpanded = false;
    Task m_hoverDeadlineTimer;
    Task m_presentTask;
    Task m_updateTask;
    Task m_retireTask;
};

} // namespace morvane
