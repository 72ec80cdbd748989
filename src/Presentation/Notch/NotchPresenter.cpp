#include "Presentation/Notch/NotchPresenter.h"

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/MotionPreference.h"
#include "Platform/PointerMonitor.h"
#include "Presentation/Notch/BuiltInNotchSurface.h"
#include "Presentation/Notch/NotchGeometry.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr Seconds fadeInDuration(0.14);
constexpr Seconds shortestCheck(0.01);

} // namespace

NotchPresenter::NotchPresenter(const PanelContext &context, Displays &displays,
                               OverlayWindows &overlays, PointerMonitor &pointer)
    : MorvanePresenter(context, displays, overlays), m_pointer(pointer) {}

NotchPresenter::~NotchPresenter() {
    // What is destroyed with the surface, such as an open text field, must not call back here.
    detach();
}

void NotchPresenter::attach(const Display &display) {
    m_display = display;
    if (m_isAttached) {
        updateVisibility();
        layoutPanel();
        return;
    }
    subscribe();
    updateVisibility();
    startHoverMonitoring();
    pollHover();
}

void NotchPresenter::update() {
    if (m_surface) {
        m_surface->refresh();
        layOutSurface();
    }
    updateVisibility();
    // Once a field has closed, the pointer decides again, and it may have left long ago. A closed
    // notch isn't polled: news alone must not open it under a pointer that rests.
    if (m_hover.isOpen()) {
        pollHover();
    }
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
    unsubscribe();
    stopHoverMonitoring();
    cancelPresentation();
    m_hover.endPresentation();
    destroyNotch();
    m_display.reset();
}

void NotchPresenter::presentPanel() {
    m_hover.present();
    open();
    startPresentation();
}

void NotchPresenter::endPresentation() {
    if (isHeld()) {
        prolongPresentation();
        return;
    }
    m_hover.endPresentation();
    close();
}

void NotchPresenter::collapseExpanded() {
    cancelPresentation();
    m_hover.collapse();
    close();
}

void NotchPresenter::dismiss() {
    endEditing();
    cancelPresentation();
    m_hover.dismiss();
    destroyNotch();
}

bool NotchPresenter::hasNotch() const {
    return m_display && m_display->isBuiltin && m_display->topSafeAreaInset > 0;
}

bool NotchPresenter::shouldBeVisible() const {
    if (!context().store.activeSessions().isEmpty()) {
        return true;
    }
    return !m_hover.isDismissed() &&
           (context().settings.showWhenIdle() || context().store.hasReportableSessions());
}

void NotchPresenter::updateVisibility() {
    if (!context().store.activeSessions().isEmpty()) {
        m_hover.undismiss();
    }
    // The display may have taken on a mode that leaves the notch out.
    if (hasNotch() && shouldBeVisible()) {
        makePanel();
    } else if (window() && !(hasNotch() && (m_hover.isOpen() || isHeld()))) {
        destroyNotch();
    }
}

void NotchPresenter::makePanel() {
    if (window() || !hasNotch()) {
        return;
    }
    m_surface = std::make_unique<BuiltInNotchSurface>(context());
    putUp(*m_surface);
    layoutPanel();
    show();
}

void NotchPresenter::layoutPanel() {
    if (!window() || !m_display) {
        return;
    }
    m_surface->setNotch(NotchGeometry::hardwareNotchSize(*m_display),
                        {NotchGeometry::contentWidthBudget(*m_display),
                         NotchGeometry::contentHeightBudget(*m_display)});
    m_surface->refresh();
    window()->setGeometry(NotchGeometry::stageFrame(*m_display), OverlayWindow::Anchor::topCenter);
    m_surface->layOut(Motion::atOnce);
    window()->setShape(m_surface->shape());
}

void NotchPresenter::layOutSurface() {
    m_surface->layOut(motion());
    window()->setShape(m_surface->shape());
}

void NotchPresenter::show() {
    if (motion() == Motion::atOnce) {
        window()->show();
        return;
    }
    window()->setOpacity(0);
    window()->show();
    fadeIn(fadeInDuration);
}

void NotchPresenter::destroyNotch() {
    m_hover.lock(context().scheduler.now());
    reportExpanded(false);
    if (!window()) {
        return;
    }
    window()->hide();
    takeDown();
    m_retiredSurface = std::move(m_surface);
    m_retireTask = context().scheduler.after(Seconds(0), [this] { m_retiredSurface.reset(); });
}

/// The one place where hovering is decided; called whenever the pointer may have moved.
void NotchPresenter::pollHover() {
    m_hoverDeadlineTimer.cancel();
    const Date now = context().scheduler.now();
    const auto decision =
        m_hover.poll(now, {.isInside = isPointerInside(), .editing = context().editing.rest(now)});
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
        context().scheduler.after(std::max(delay, shortestCheck), [this] { pollHover(); });
}

/// Goes by the pointer's position, not by enter and leave events: a shell that changes its shape
/// under a resting pointer causes both. An open menu counts as inside, since it draws the pointer
/// away.
bool NotchPresenter::isPointerInside() {
    if (!m_display) {
        return false;
    }
    const auto pointer = pointerPosition();
    const bool isOnSurface =
        pointer && window() && window()->isVisible() &&
        m_surface->shape().contains(*pointer - NotchGeometry::stageFrame(*m_display).topLeft());
    return isOnSurface || isMenuOpen() ||
           (pointer && NotchGeometry::hoverZone(*m_display).contains(*pointer));
}

void NotchPresenter::open() {
    if (!hasNotch()) {
        return;
    }
    reportExpanded(true);
    makePanel();
    setMode(BuiltInNotchSurface::Mode::expanded);
}

void NotchPresenter::close() {
    if (!shouldBeVisible()) {
        destroyNotch();
        return;
    }
    m_hover.lock(context().scheduler.now());
    reportExpanded(false);
    makePanel();
    setMode(BuiltInNotchSurface::Mode::compact);
}

void NotchPresenter::setMode(BuiltInNotchSurface::Mode mode) {
    if (window()) {
        m_surface->setMode(mode, motion());
        window()->setShape(m_surface->shape());
    }
}

/// Nothing is animated without a compositor: the area around a growing shell would be black.
Motion NotchPresenter::motion() const {
    return context().motion.isReduced() || !window()->isTranslucent() ? Motion::atOnce
                                                                      : Motion::animated;
}

/// The panel stays while somebody types in it, works it with the keys or has its menu open.
bool NotchPresenter::isHeld() const {
    return isMenuOpen() || isUsedByKeys() || context().editing.isActive(context().scheduler.now());
}

} // namespace morvane

#include "moc_NotchPresenter.cpp"
