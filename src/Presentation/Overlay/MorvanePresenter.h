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

/// Shows Morvane on one display. This base class has what all presenters share: the window with its
/// keyboard and its menu, the coalesced update, the time of a presentation, and the report of being
/// open. Owned by `PresenterManager`; main thread.
class MorvanePresenter : public QObject {
    Q_OBJECT

public:
    ~MorvanePresenter() override;

    /// As last reported: whether the panel is open, and not hidden by a full-screen program.
    bool isExpanded() const { return m_toldExpanded; }

    // Answered by the open panel; false and none while it is closed.
    bool hasBeenRead(const QString &sessionID) const;
    std::optional<CompletedRecord> recordAt(int digit) const;

    /// What a right click opens; may be absent.
    QPointer<QMenu> contextMenu;

    /// Starts showing on the display; called again whenever its geometry may have changed.
    virtual void attach(const Display &display) = 0;

    /// Whether the display, as it is now, has a place for what this shows.
    virtual bool canShow() const { return true; }

    /// Only capsules stand in for a tray, since a notch is there anyway.
    virtual void setStandIn(StandIn) {}

    /// Opens the panel on request.
    virtual void presentPanel() = 0;

    /// Opens the panel with the keyboard in it, where the desktop gives panels the keyboard.
    void presentPanelToKeys();

    /// Has a screen reader say `text`, if anything is shown on the display.
    void announce(const QString &text);

    /// Closes the panel but stays.
    virtual void collapseExpanded() = 0;

    /// Goes away until something new happens.
    virtual void dismiss() = 0;

    /// Ends for good and frees everything.
    virtual void detach() = 0;

signals:
    /// This presenter's panel opens or closes; never sent twice in a row with the same value.
    void expandedChanged(bool isExpanded);

protected:
    /// All three outlive the presenter.
    MorvanePresenter(const PanelContext &context, Displays &displays, OverlayWindows &overlays);

    const PanelContext &context() const { return m_context; }
    /// None where the position is unknown; the pointer is then not over any of our windows.
    std::optional<QPoint> pointerPosition() const;

    /// Null before `putUp` and after `takeDown`.
    OverlayWindow *window() const { return m_window.get(); }

    /// The fade of the window, in or out.
    Animation &fade() { return m_fade; }

    /// Follows what is shown: the store, the limits, the settings, and fields that open and close.
    void subscribe();

    /// Undoes `subscribe`, and drops an update that is due.
    void unsubscribe();

    /// All calls within one turn of the event loop lead to one `update` after it.
    void scheduleUpdate();

    /// Gives the surface a window, which isn't shown yet. The surface must outlive the window.
    void putUp(PanelSurface &surface);

    /// Destroys the window. A field that is destroyed later, with the surface, doesn't access it.
    void takeDown();

    /// Fades the window in from its present opacity. `step` gets the eased progress, from 0 to 1.
    void fadeIn(Seconds duration, std::function<void(double)> step = {},
                std::function<void()> finished = {});

    /// The panel has been opened on request; `endPresentation` follows after ten seconds.
    void startPresentation();
    void cancelPresentation() { m_presentation.cancel(); }

    /// Calls `endPresentation` again in a moment.
    void prolongPresentation();

    bool isMenuOpen() const;

    /// Whether a person works the panel with the keys, and has pressed one within the lease.
    bool isUsedByKeys() const;

    /// The keyboard goes back to whoever had it.
    void endKeyboardUse();

    /// Closes the open fields of the panel because the person goes elsewhere; they would keep it
    /// open and hold the keyboard. A name counts as typed, and a reply is kept unsent.
    void endEditing();

    /// Records whether the panel is open; it is reported as open only while it can be seen.
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
    Lease m_keyLease; ///< how long the use by keys lasts; renewed by each key
    Task m_presentation;
    std::unique_ptr<AbandonedMenu> m_abandonedMenu; ///< null while no menu is open
    std::optional<QPoint> m_pointerLostAt;          ///< where it was when a menu closed
    Task m_updateTask;
};

} // namespace morvane
