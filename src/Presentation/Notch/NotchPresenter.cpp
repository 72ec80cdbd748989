#include "Presentation/Notch/NotchPresenter.h"

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/MotionPreference.h"
#include "Platform/OverlayWindows.h"
#include "Platform/PointerMonitor.h"
#include "Presentation/Notch/BuiltInNotchSurface.h"
#include "Presentation/Notch/NotchGeometry.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr Seconds presentationDuration(10);
constexpr Seconds heldInterval(0.25);
constexpr Seconds fadeInDuration(0.14);
constexpr Seconds shortestCheck(0.01);

} // namespace

NotchPresenter::NotchPresenter(const PanelContext &context, Displays &displays,
                               OverlayWindows &overlays, PointerMonitor &pointer)
    : m_context(context), m_displays(displays), m_overlays(overlays), m_pointer(pointer),
      m_fade(context.scheduler) {}

NotchPresenter::~NotchPresenter() {
    // What goes with the surface, such as a field that somebody types in, must not call back here.
    detach();
}

void NotchPresenter::attach(const Display &display) {
    m_display = display;
    if (m_isAttached) {
        applyCollectionBehaviour();
        updateVisibility();
        layoutPanel();
        return;
    }
    subscribe();
    updateVisibility();
    startHoverMonitoring();
    pollHover();
}

void NotchPresenter::subscribe() {
    connect(&m_context.store, &SessionStore::sessionsChanged, this,
            &NotchPresenter::scheduleUpdate);
    connect(&m_context.store, &SessionStore::completedHistoryChanged, this,
            &NotchPresenter::scheduleUpdate);
    connect(&m_context.settings, &MorvaneSettings::changed, this, &NotchPresenter::scheduleUpdate);
    connect(&m_context.editing, &InlineEditing::countChanged, this,
            &NotchPresenter::scheduleUpdate);
}

/// Whatever happens within one turn of the event loop ends in one update after it.
void NotchPresenter::scheduleUpdate() {
    m_updateTask = m_context.scheduler.after(Seconds(0), [this] {
        applyCollectionBehaviour();
        if (m_surface) {
            m_surface->refresh();
            layOutSurface();
        }
        updateVisibility();
        // A field that closes lets the pointer decide again, and it may have left long ago.
        pollHover();
    });
}

void NotchPresenter::startHoverMonitoring() {
    m_isAttached = true;
    connect(&m_pointer, &PointerMonitor::moved, this, &NotchPresenter::pollHover);
    m_pointer.activate();
}

void NotchPresenter::stopHoverMonitoring() {
    m_hoverDeadlineTimer.cancel();
    if (m_isAttached) {
        m_isAttached = false;
        m_pointer.disconnect(this);
        m_pointer.deactivate();
    }
}

void NotchPresenter::detach() {
    m_context.store.disconnect(this);
    m_context.settings.disconnect(this);
    m_context.editing.disconnect(this);
    m_updateTask.cancel();
    stopHoverMonitoring();
    m_presentTask.cancel();
    m_hover.endPresentation();
    destroyNotch();
    m_display.reset();
}

void NotchPresenter::presentPanel() {
    m_hover.present();
    open();
    m_presentTask = m_context.scheduler.after(presentationDuration, [this] { endPresentation(); });
}

void NotchPresenter::endPresentation() {
    if (isHeld()) {
        m_presentTask = m_context.scheduler.after(heldInterval, [this] { endPresentation(); });
        return;
    }
    m_hover.endPresentation();
    close();
}

void NotchPresenter::collapseExpanded() {
    m_presentTask.cancel();
    m_hover.collapse();
    close();
}

void NotchPresenter::dismiss() {
    m_presentTask.cancel();
    m_hover.dismiss();
    destroyNotch();
}

bool NotchPresenter::hasNotch() const {
    return m_display && m_display->isBuiltin && m_display->topSafeAreaInset > 0;
}

bool NotchPresenter::shouldBeVisible() const {
    if (!m_context.store.activeSessions().isEmpty()) {
        return true;
    }
    return !m_hover.isDismissed() &&
           (m_context.settings.showWhenIdle() || m_context.store.hasReportableSessions());
}

void NotchPresenter::updateVisibility() {
    if (!m_context.store.activeSessions().isEmpty()) {
        m_hover.undismiss();
    }
    // The display may have taken on a mode that leaves the notch out.
    const bool isWanted = hasNotch() && (shouldBeVisible() || m_hover.isOpen() || isHeld());
    if (isWanted && shouldBeVisible()) {
        makePanel();
    } else if (!isWanted && m_window) {
        destroyNotch();
    }
}

void NotchPresenter::applyCollectionBehaviour() {
    if (m_window) {
        m_window->setHidesOverFullscreen(m_context.settings.hideOverFullscreen());
    }
}

void NotchPresenter::makePanel() {
    if (m_window || !hasNotch()) {
        return;
    }
    m_surfaceState = {};
    m_surface = std::make_unique<BuiltInNotchSurface>(m_context);
    m_surface->refresh();
    m_window = m_overlays.adopt(*m_surface);
    connectPanel();
    applyCollectionBehaviour();
    layoutPanel();
    fadeIn();
}

void NotchPresenter::connectPanel() {
    m_surface->onTakeKeyboard = [this] { return m_window && m_window->takeKeyboard(); };
    m_surface->onReleaseKeyboard = [this] {
        if (m_window) {
            m_window->releaseKeyboard();
        }
    };
    connect(m_surface.get(), &PanelSurface::pointerCrossed, this, &NotchPresenter::pollHover);
    connect(m_surface.get(), &PanelSurface::contextMenuRequested, this, &NotchPresenter::openMenu);
    connect(m_surface.get(), &PanelSurface::menuClosed, this, &NotchPresenter::menuClosed);
    connect(m_surface.get(), &BuiltInNotchSurface::contentResized, this,
            &NotchPresenter::scheduleUpdate);
}

void NotchPresenter::layoutPanel() {
    if (!m_window || !m_display) {
        return;
    }
    m_surface->setNotch(NotchGeometry::hardwareNotchSize(*m_display),
                        NotchGeometry::contentHeightBudget(*m_display));
    m_window->setGeometry(NotchGeometry::stageFrame(*m_display), OverlayWindow::Anchor::topCenter);
    m_surface->layOut(Motion::atOnce);
    m_window->setShape(m_surface->shape());
}

void NotchPresenter::layOutSurface() {
    m_surface->layOut(motion());
    m_window->setShape(m_surface->shape());
}

void NotchPresenter::fadeIn() {
    if (motion() == Motion::atOnce) {
        m_window->show();
        return;
    }
    m_window->setOpacity(0);
    m_window->show();
    m_fade.start(fadeInDuration,
                 [this](double share) { m_window->setOpacity(Animation::easeOut(share)); });
}

void NotchPresenter::destroyNotch() {
    m_hover.lock(m_context.scheduler.now());
    reportExpanded(false);
    m_surfaceState = {};
    if (!m_window) {
        return;
    }
    m_fade.stop();
    m_window->hide();
    m_window.reset();
    m_surface->disconnect(this);
    m_retiredSurface = std::move(m_surface);
    m_retireTask = m_context.scheduler.after(Seconds(0), [this] { m_retiredSurface.reset(); });
}

/// The one place where hovering is decided; called whenever the pointer may have moved.
void NotchPresenter::pollHover() {
    m_hoverDeadlineTimer.cancel();
    const Date now = m_context.scheduler.now();
    const auto decision =
        m_hover.poll(now, {.isInside = isPointerInside(), .editing = m_context.editing.rest(now)});
    if (decision.checkAfter) {
        scheduleHoverCheck(*decision.checkAfter);
    }
    switch (decision.change) {
    case NotchHover::Decision::Change::none:
        break;
    case NotchHover::Decision::Change::open:
        open();
        break;
    case NotchHover::Decision::Change::close:
        close();
        break;
    }
}

void NotchPresenter::scheduleHoverCheck(Seconds delay) {
    m_hoverDeadlineTimer =
        m_context.scheduler.after(std::max(delay, shortestCheck), [this] { pollHover(); });
}

/// Where the pointer is decides, not whether it has just entered or left: a shell that changes its
/// shape under a resting pointer makes the windowing system report both. An open menu counts as the
/// pointer, which it leads away.
bool NotchPresenter::isPointerInside() {
    if (!m_display) {
        return false;
    }
    const QPoint pointer = m_displays.pointerPosition();
    m_surfaceState.isHovering =
        m_window && m_window->isVisible() &&
        m_surface->shape().contains(pointer - NotchGeometry::stageFrame(*m_display).topLeft());
    return m_surfaceState.isHovering || isMenuOpen() ||
           NotchGeometry::hoverZone(*m_display).contains(pointer);
}

void NotchPresenter::open() {
    if (!hasNotch()) {
        return;
    }
    reportExpanded(true);
    makePanel();
    setMode(BuiltInNotchState::Mode::expanded);
}

void NotchPresenter::close() {
    if (!shouldBeVisible()) {
        destroyNotch();
        return;
    }
    m_hover.lock(m_context.scheduler.now());
    reportExpanded(false);
    makePanel();
    setMode(BuiltInNotchState::Mode::compact);
}

void NotchPresenter::setMode(BuiltInNotchState::Mode mode) {
    if (!m_window || m_surfaceState.mode == mode) {
        return;
    }
    m_surfaceState.mode = mode;
    m_surface->setMode(mode, motion());
    m_window->setShape(m_surface->shape());
}

void NotchPresenter::reportExpanded(bool isExpanded) {
    if (isExpanded == m_reportedExpanded) {
        return;
    }
    m_reportedExpanded = isExpanded;
    if (onExpandedChanged) {
        onExpandedChanged(isExpanded);
    }
}

/// Without a compositor a shell that is still growing would show the black that is around it.
Motion NotchPresenter::motion() const {
    return m_context.motion.isReduced() || !m_window->isTranslucent() ? Motion::atOnce
                                                                      : Motion::animated;
}

void NotchPresenter::openMenu(const QPoint &position) {
    if (contextMenu) {
        m_surface->open(*contextMenu, position);
    }
}

/// At once, since what was chosen happens next, and may be to open the panel.
void NotchPresenter::menuClosed() {
    pollHover();
    if (m_window && m_window->isVisible()) {
        // It has kept below the menu, and maybe below others.
        m_window->show();
    }
    // The menu may have been all that kept it on screen.
    scheduleUpdate();
}

bool NotchPresenter::isMenuOpen() const {
    return m_surface && m_surface->openMenu() != nullptr;
}

/// While somebody types in the panel or has its menu open, it doesn't go away.
bool NotchPresenter::isHeld() const {
    return isMenuOpen() || m_context.editing.isActive(m_context.scheduler.now());
}

} // namespace morvane
