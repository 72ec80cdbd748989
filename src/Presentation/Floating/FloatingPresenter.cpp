#include "Presentation/Floating/FloatingPresenter.h"

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsagePoller.h"
#include "Platform/MotionPreference.h"
#include "Presentation/Floating/FloatingCapsuleView.h"
#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr Seconds flashDuration(5);
constexpr Seconds growthDuration(0.12);
constexpr Seconds showDuration(0.16);
constexpr Seconds hideDuration(0.12);
constexpr double showOffset = -8;
constexpr int rightMargin = 12;
constexpr int smallestBudget = 280;
constexpr int largestBudget = 900;
constexpr double budgetShare = 0.7;

int interpolate(int from, int to, double share) {
    return static_cast<int>(std::lround(from + (to - from) * share));
}

QRect interpolate(const QRect &from, const QRect &to, double share) {
    return {QPoint(interpolate(from.left(), to.left(), share),
                   interpolate(from.top(), to.top(), share)),
            QPoint(interpolate(from.right(), to.right(), share),
                   interpolate(from.bottom(), to.bottom(), share))};
}

} // namespace

FloatingPresenter::FloatingPresenter(const PanelContext &context, Displays &displays,
                                     OverlayWindows &overlays, Flavour flavour)
    : MorvanePresenter(context, displays, overlays), m_flavour(flavour),
      m_capsule(context.scheduler, context.editing), m_growth(context.scheduler) {}

FloatingPresenter::~FloatingPresenter() {
    // What is destroyed with the panel, such as an open text field, must not call back here.
    if (m_view) {
        detach();
    }
}

void FloatingPresenter::attach(const Display &display) {
    m_display = display;
    const bool isFirst = !m_view;
    if (isFirst) {
        makePanel();
    }
    const double height = budgetShare * display.visibleFrame.height();
    m_view->setContentBudget({display.visibleFrame.width(),
                              std::clamp(static_cast<int>(height), smallestBudget, largestBudget)});
    if (isFirst) {
        follow();
    } else {
        m_view->refresh(); // the budget decides how much of a long call is shown
    }
    // The scale may have changed, even if the place in points is the same.
    m_target = {};
    updateVisibility(Motion::atOnce);
    layout(Motion::atOnce);
}

void FloatingPresenter::setStandIn(StandIn standIn) {
    if (standIn != m_standIn) {
        m_standIn = standIn;
        scheduleUpdate();
    }
}

void FloatingPresenter::makePanel() {
    m_view = std::make_unique<FloatingCapsuleView>(context());
    m_view->refresh();
    putUp(*m_view);
}

void FloatingPresenter::follow() {
    subscribe();
    connect(&context().store, &SessionStore::stateChanges, this, &FloatingPresenter::flash);
    connect(&m_capsule, &CapsuleState::expandedChanged, this, &FloatingPresenter::expansionChanged);
}

void FloatingPresenter::update() {
    m_view->refresh();
    updateVisibility(Motion::animated);
}

void FloatingPresenter::detach() {
    unsubscribe();
    m_capsule.disconnect(this);
    m_flashTask.cancel();
    cancelPresentation();
    m_growth.stop();
    reportExpanded(false);
    takeDown();
    m_view.reset();
}

void FloatingPresenter::presentPanel() {
    m_dismissed = false;
    m_presented = true;
    m_capsule.open();
    updateVisibility(Motion::atOnce);
    startPresentation();
}

void FloatingPresenter::endPresentation() {
    if (isUsedByKeys()) {
        prolongPresentation();
        return;
    }
    endKeyboardUse();
    m_presented = false;
    if (!isMenuOpen()) {
        m_capsule.setHovering(false);
    }
    updateVisibility(Motion::atOnce);
}

void FloatingPresenter::collapseExpanded() {
    m_presented = false;
    cancelPresentation();
    endKeyboardUse();
    m_capsule.setHovering(false);
    updateVisibility(Motion::animated);
}

void FloatingPresenter::dismiss() {
    m_dismissed = true;
    m_presented = false;
    m_flashActive = false;
    endEditing();
    cancelPresentation();
    endKeyboardUse();
    m_capsule.setHovering(false);
    updateVisibility(Motion::atOnce);
}

void FloatingPresenter::flash() {
    m_dismissed = false;
    m_flashActive = true;
    scheduleUpdate();
    m_flashTask = context().scheduler.after(flashDuration, [this] {
        m_flashActive = false;
        updateVisibility(Motion::atOnce);
    });
}

void FloatingPresenter::expansionChanged(bool isExpanded) {
    // Reported first, so that the rows have their digits by the time they are shown.
    reportExpanded(isExpanded);
    updateVisibility(Motion::animated);
}

/// Whether active sessions keep it on screen.
bool FloatingPresenter::isHeldBySessions() const {
    return (m_flavour == Flavour::ambient || m_standIn != StandIn::none) &&
           !context().store.activeSessions().isEmpty();
}

bool FloatingPresenter::shouldBeVisible() const {
    if (context().editing.isActive(context().scheduler.now()) || m_standIn == StandIn::always ||
        isHeldBySessions()) {
        return true;
    }
    if (m_dismissed && context().store.activeSessions().isEmpty()) {
        return false;
    }
    return context().settings.showWhenIdle() || m_presented || m_capsule.isExpanded() ||
           m_flashActive || context().store.hasUnacknowledgedNeedsInput() ||
           (context().store.hasWorkingUsageMilestoneSession() && context().usage.activeMilestone());
}

void FloatingPresenter::updateVisibility(Motion motion) {
    if (isHeldBySessions()) {
        m_dismissed = false; // also for the time after these sessions
    }
    if (shouldBeVisible()) {
        const bool isSteady =
            window()->isVisible() && window()->opacity() >= 1 && !fade().isRunning();
        layout(isSteady ? motion : Motion::atOnce);
        if (!window()->isVisible()) {
            showPanel();
        } else if (!isSteady && !m_isFadingIn) {
            comeDown();
        }
    } else if (window()->isVisible() && (m_isFadingIn || !fade().isRunning())) {
        hidePanel();
    }
    followPointer();
}

void FloatingPresenter::showPanel() {
    window()->setOpacity(0);
    m_offset = showOffset;
    place();
    window()->show();
    comeDown();
}

void FloatingPresenter::comeDown() {
    m_isFadingIn = true;
    fadeIn(
        durationOf(showDuration),
        [this, from = m_offset](double eased) {
            m_offset = from * (1 - eased);
            place();
        },
        [this] { m_isFadingIn = false; });
}

/// If it is shown again meanwhile, the new fade replaces this one, together with the final step
/// that would hide the window.
void FloatingPresenter::hidePanel() {
    m_isFadingIn = false;
    const double from = window()->opacity();
    fade().start(
        durationOf(hideDuration),
        [this, from](double share) { window()->setOpacity(from * (1 - Animation::easeIn(share))); },
        [this] {
            window()->hide();
            m_view->setExpanded(m_capsule.isExpanded());
            window()->setOpacity(1);
            followPointer();
        });
}

/// 0 if the person prefers reduced motion.
Seconds FloatingPresenter::durationOf(Seconds motion) const {
    return context().motion.isReduced() ? Seconds(0) : motion;
}

/// The view takes over the capsule's state here and after a fade-out, so that a panel that is
/// hidden altogether fades as it is.
void FloatingPresenter::layout(Motion motion) {
    m_view->setExpanded(m_capsule.isExpanded());
    const QSize size = m_view->fittingSize();
    if (size.isEmpty()) {
        return;
    }
    const QRect target = tabFrame(size);
    if (target == m_target) {
        return;
    }
    m_target = target;
    if (motion == Motion::atOnce || !window()->isTranslucent()) {
        m_growth.stop();
        m_present = m_frame = target;
        place();
        return;
    }
    m_frame = m_present.united(target);
    m_growth.start(
        durationOf(growthDuration),
        [this, from = m_present](double share) {
            m_present = interpolate(from, m_target, Animation::easeOut(share));
            place();
        },
        [this] {
            m_frame = m_target;
            place();
        });
}

QRect FloatingPresenter::tabFrame(const QSize &size) const {
    const QRect &area = m_display.visibleFrame;
    const int x = anchor() == OverlayWindow::Anchor::topRight
                      ? std::max(area.left(), area.right() + 1 - size.width() - rightMargin)
                      : area.left() + (area.width() - size.width()) / 2;
    return {QPoint(x, area.top()), size};
}

OverlayWindow::Anchor FloatingPresenter::anchor() const {
    const bool isRight = m_flavour == Flavour::onCall &&
                         context().settings.floatingPosition() == FloatingPosition::topRight;
    return isRight ? OverlayWindow::Anchor::topRight : OverlayWindow::Anchor::topCenter;
}

void FloatingPresenter::place() {
    const QPoint origin = -m_frame.topLeft();
    m_view->setTab(m_present.translated(origin), m_target.translated(origin));
    window()->setShape(m_view->shape(m_target.translated(origin)));
    window()->setGeometry(m_frame.translated(0, static_cast<int>(std::lround(m_offset))), anchor());
}

/// Goes by the pointer's position, not by enter and leave events: a tab that changes its shape
/// under a resting pointer causes both. An open menu counts as inside, since it draws the pointer
/// away, and so does the use by keys.
void FloatingPresenter::followPointer() {
    const auto pointer = pointerPosition();
    // The view is not there for the pointer while a full-screen program hides it.
    const bool isInside = isMenuOpen() || isUsedByKeys() ||
                          (pointer && m_view->isVisible() &&
                           m_view->shape(m_target).contains(QPointF(*pointer) + QPointF(0.5, 0.5)));
    if (isInside != m_isHovering) {
        m_isHovering = isInside;
        m_capsule.setHovering(isInside);
    }
}

} // namespace morvane

#include "moc_FloatingPresenter.cpp"
