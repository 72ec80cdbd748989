#pragma once

#include "Presentation/Notch/BuiltInNotchSurface.h"
#include "Presentation/Notch/NotchHover.h"
#include "Presentation/Overlay/MorvanePresenter.h"

#include <memory>
#include <optional>

namespace morvane {

class PointerMonitor;

/// Shows Morvane around the notch of a display: the status beside it, and the panel below it while
/// the pointer rests there. `NotchHover` decides about opening and closing; this carries it out.
/// The window exists only while there is something to show.
class NotchPresenter : public MorvanePresenter {
    Q_OBJECT

public:
    NotchPresenter(const PanelContext &context, Displays &displays, OverlayWindows &overlays,
                   PointerMonitor &pointer);
    ~NotchPresenter() override;

    void attach(const Display &display) override;
    bool canShow() const override { return hasNotch(); }
    void presentPanel() override;
    void collapseExpanded() override;
    void dismiss() override;
    void detach() override;

private:
    void update() override;
    void followPointer() override { pollHover(); }
    void endPresentation() override;

    void startHoverMonitoring();
    void stopHoverMonitoring();

    bool hasNotch() const;
    bool shouldBeVisible() const;
    void updateVisibility();
    void makePanel();
    void layoutPanel();
    void layOutSurface();
    void show();
    void destroyNotch();

    void pollHover();
    void scheduleHoverCheck(Seconds delay);
    bool isPointerInside();
    void open();
    void close();
    void setMode(BuiltInNotchSurface::Mode mode);
    Motion motion() const;

    bool isHeld() const;

    PointerMonitor &m_pointer;
    std::optional<Display> m_display;

    std::unique_ptr<BuiltInNotchSurface> m_surface;
    std::unique_ptr<BuiltInNotchSurface>
        m_retiredSurface; ///< deleted later: its own click may have retired it

    bool m_isAttached = false;
    NotchHover m_hover;
    Task m_hoverDeadlineTimer;
    Task m_retireTask;
};

} // namespace morvane
