#pragma once

#include "Platform/Displays.h"
#include "Platform/OverlayWindow.h"
#include "Presentation/Overlay/AbandonedMenu.h"
#include "Presentation/Overlay/Lease.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Overlay/StandIn.h"
#include "Presentation/Style/Animation.h"

#include <QMenu>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

namespace morvane {

class OverlayWindows;
class PanelSurface;

/// What shows Morvane on one display, and what all that do so have in common: the window with its
/// keyboard and its menu, the coalesced update, the time of a presentation, and the report of being
/// open. Owned by `PresenterManager`; main thread.
class MorvanePresenter : public QObject {
    Q_OBJECT

public:
    ~MorvanePresenter() override;

    /// What was told last: whether the panel is open, and not hidden by a full-screen program.
    bool isExpanded() const { return m_toldExpanded; }

    // As the panel that is open here says.
    bool hasBeenRead(const QString &sessionID) const;
    std::optional<CompletedRecord> recordAt(int digit) const;

    /// What a right click opens; may be absent.
    QPointer<QMenu> contextMenu;

    /// Takes the display up; called again whenever its geometry may have changed.
    virtual void attach(const Display &display) = 0;

    /// Whether the display, as it is now, has a place for what this shows.
    virtual bool canShow() const { return true; }

    /// A notch is there anyway, so that only capsules stand in for anything.
    virtual void setStandIn(StandIn) {}

    /// Opens the panel on request.
    virtual void presentPanel() = 0;

    /// The same for somebody who works it with the keys from there on, as far as it is given any.
    void presentPanelToKeys();

    /// To a screen reader, if there is anything on the display.
    void announce(const QString &text);

    /// Closes the panel but stays.
    virtual void collapseExpanded() = 0;

    /// Goes away until something new happens.
    virtual void dismiss() = 0;

    /// Ends for good and frees everything.
    virtual void detach() = 0;

signals:
    /// This presenter's panel opens or closes; never the same twice in a row.
    void expandedChanged(bool isExpanded);

protected:
    /// All three outlive the presenter.
    MorvanePresenter(const PanelContext &context, Displays &displays, OverlayWindows &overlays);

    const PanelContext &context() const { return m_context; }
    /// None where it isn't told, and so is not on anything of ours.
    std::optional<QPoint> pointerPosition() const;

    /// None while nothing is put up.
    OverlayWindow *window() const { return m_window.get(); }

    /// The fade of the window, in or out.
    Animation &fade() { return m_fade; }

    /// Follows what is shown: the store, the limits, the settings, and fields that open and close.
    void subscribe();

    /// Follows none of that any more, and drops an update that is due.
    void unsubscribe();

    /// Whatever happens within one turn of the event loop ends in one `update` after it.
    void scheduleUpdate();

    /// Gives the surface a window, which isn't shown yet. The surface must outlive it.
    void putUp(PanelSurface &surface);

    /// Takes the window away. A field that goes down with its surface later doesn't reach for it.
    void takeDown();

    /// Brings the opacity from what it is to 1. `step` is told the eased share of the way.
    void fadeIn(Seconds duration, std::function<void(double)> step = {},
                std::function<void()> finished = {});

    /// The panel has been opened on request; `endPresentation` follows after ten seconds.
    void startPresentation();
    void cancelPresentation() { m_presentation.cancel(); }

    /// Asks again in a moment.
    void prolongPresentation();

    bool isMenuOpen() const;

    /// Whether a person works the panel with the keys, and has pressed one not too long ago.
    bool isUsedByKeys() const;

    /// The keyboard goes back to whoever had it.
    void endKeyboardUse();

    /// Closes the fields that are open in the panel, which would hold it open and the keyboard too.
    void abandonEditing();

    /// Counts for others only while the panel can be seen.
    void reportExpanded(bool isExpanded);

    /// Something that is shown has changed.
    virtual void update() = 0;

    /// The pointer may have come or gone.
    virtual void followPointer() = 0;

    virtual void endPresentation() = 0;

private:
    void applyFullscreenSetting();
    void tellExpanded();
    void endPresentationAfter(Seconds delay);
    void openMenu(const QPoint &position);
    void menuClosed();

    const PanelContext &m_context;
    Displays &m_displays;
    OverlayWindows &m_overlays;
    QPointer<PanelSurface> m_surface; ///< what the window shows
    std::unique_ptr<OverlayWindow> m_window;
    Animation m_fade;
    bool m_isExpanded = false;
    bool m_toldExpanded = false;
    Lease m_keyLease; ///< of the keyboard; renewed by each key
    Task m_presentation;
    std::unique_ptr<AbandonedMenu> m_abandonedMenu; ///< none but while a menu is open
    std::optional<QPoint> m_pointerLostAt;          ///< where it was when a menu closed
    Task m_updateTask;
};

} // namespace morvane
