#include "Presentation/Overlay/MorvanePresenter.h"

#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsagePoller.h"
#include "Platform/OverlayWindows.h"
#include "Presentation/Overlay/DigitShortcuts.h"
#include "Presentation/Overlay/InlineEditing.h"
#include "Presentation/Overlay/InlineNameField.h"
#include "Presentation/Overlay/PanelSurface.h"

namespace morvane {

namespace {

constexpr Seconds presentationDuration(10);
constexpr Seconds prolongation(0.25);

} // namespace

MorvanePresenter::MorvanePresenter(const PanelContext &context, Displays &displays,
                                   OverlayWindows &overlays)
    : m_context(context), m_displays(displays), m_overlays(overlays), m_fade(context.scheduler),
      m_keyLease(InlineEditing::lease) {}

MorvanePresenter::~MorvanePresenter() = default;

void MorvanePresenter::subscribe() {
    connect(&m_context.store, &SessionStore::sessionsChanged, this,
            &MorvanePresenter::scheduleUpdate);
    connect(&m_context.store, &SessionStore::completedHistoryChanged, this,
            &MorvanePresenter::scheduleUpdate);
    connect(&m_context.usage, &UsagePoller::changed, this, &MorvanePresenter::scheduleUpdate);
    connect(&m_context.settings, &MorvaneSettings::changed, this, [this] {
        applyFullscreenSetting();
        scheduleUpdate();
    });
    connect(&m_context.editing, &InlineEditing::countChanged, this,
            &MorvanePresenter::scheduleUpdate);
    if (m_context.digitShortcuts != nullptr) {
        connect(m_context.digitShortcuts, &DigitShortcuts::changed, this,
                &MorvanePresenter::scheduleUpdate);
    }
}

void MorvanePresenter::unsubscribe() {
    m_context.store.disconnect(this);
    m_context.usage.disconnect(this);
    m_context.settings.disconnect(this);
    m_context.editing.disconnect(this);
    if (m_context.digitShortcuts != nullptr) {
        m_context.digitShortcuts->disconnect(this);
    }
    m_updateTask.cancel();
}

void MorvanePresenter::scheduleUpdate() {
    m_updateTask = m_context.scheduler.after(Seconds(0), [this] { update(); });
}

void MorvanePresenter::putUp(PanelSurface &surface) {
    m_surface = &surface;
    m_window = m_overlays.adopt(surface);
    m_window->onCoveredChanged = [this] { tellExpanded(); };
    applyFullscreenSetting();
    surface.setOverlay(m_window.get());
    connect(&surface, &PanelSurface::pointerCrossed, this, &MorvanePresenter::followPointer);
    connect(&surface, &PanelSurface::contextMenuRequested, this, &MorvanePresenter::openMenu);
    connect(&surface, &PanelSurface::menuClosed, this, &MorvanePresenter::menuClosed);
    connect(&surface, &PanelSurface::openRequested, this, [this] {
        presentPanelToKeys();
        // A screen reader can take half a minute to read out a single call.
        endPresentationAfter(InlineEditing::lease);
    });
    connect(&surface, &PanelSurface::keyUsed, this,
            [this] { m_keyLease.renew(m_context.scheduler.now()); });
    connect(&surface, &PanelSurface::escaped, this, [this] {
        endEditing();
        collapseExpanded();
    });
    connect(&surface, &PanelSurface::contentResized, this, &MorvanePresenter::scheduleUpdate);
}

void MorvanePresenter::takeDown() {
    m_fade.stop();
    m_abandonedMenu.reset();
    if (m_surface) {
        m_surface->disconnect(this);
        m_surface->setOverlay(nullptr);
    }
    m_window.reset();
    m_surface.clear();
}

void MorvanePresenter::applyFullscreenSetting() {
    if (m_window) {
        m_window->setHidesOverFullscreen(m_context.settings.hideOverFullscreen());
    }
}

void MorvanePresenter::fadeIn(Seconds duration, std::function<void(double)> step,
                              std::function<void()> finished) {
    const double from = m_window->opacity();
    m_fade.start(
        duration,
        [this, from, step = std::move(step)](double share) {
            const double eased = Animation::easeOut(share);
            m_window->setOpacity(from + (1 - from) * eased);
            if (step) {
                step(eased);
            }
        },
        std::move(finished));
}

void MorvanePresenter::presentPanelToKeys() {
    presentPanel();
    m_keyLease.end();
    if (m_surface && m_surface->beginKeyboardUse()) {
        m_surface->takeFocus();
    }
}

void MorvanePresenter::announce(const QString &text) {
    if (!m_surface) {
        // The news may itself be the reason to show the surface, which `update` then makes.
        update();
    }
    if (m_surface) {
        m_surface->announce(text);
    }
}

/// Where a menu isn't told that the pointer has left for another program's window, the pointer
/// counts as gone after the menu has closed, until it moves: XWayland reports it on the panel
/// behind.
std::optional<QPoint> MorvanePresenter::pointerPosition() const {
    const QPoint position = m_displays.pointerPosition();
    return m_displays.isPointerKnown() && position != m_pointerLostAt ? std::optional(position)
                                                                      : std::nullopt;
}

bool MorvanePresenter::isUsedByKeys() const {
    return m_window && m_surface->isUsedByKeys() && m_window->holdsKeyboard() &&
           m_keyLease.left(m_context.scheduler.now()) > Seconds(0);
}

void MorvanePresenter::endKeyboardUse() {
    if (m_surface) {
        m_surface->endKeyboardUse();
    }
}

void MorvanePresenter::endEditing() {
    if (!m_surface) {
        return;
    }
    for (InlineNameField *field : m_surface->findChildren<InlineNameField *>()) {
        field->goElsewhere();
    }
}

void MorvanePresenter::startPresentation() {
    endPresentationAfter(presentationDuration);
}

void MorvanePresenter::prolongPresentation() {
    endPresentationAfter(prolongation);
}

void MorvanePresenter::endPresentationAfter(Seconds delay) {
    m_presentation = m_context.scheduler.after(delay, [this] { endPresentation(); });
}

bool MorvanePresenter::isMenuOpen() const {
    return m_surface && m_surface->openMenu() != nullptr;
}

void MorvanePresenter::reportExpanded(bool isExpanded) {
    m_isExpanded = isExpanded;
    if (!isExpanded) {
        endKeyboardUse();
    }
    tellExpanded();
}

/// A panel that is covered must not take keys from the program that covers it.
void MorvanePresenter::tellExpanded() {
    const bool isExpanded = m_isExpanded && !(m_window && m_window->isCovered());
    if (isExpanded != m_toldExpanded) {
        m_toldExpanded = isExpanded;
        emit expandedChanged(isExpanded);
    }
}

bool MorvanePresenter::hasBeenRead(const QString &sessionID) const {
    return m_surface && m_surface->hasBeenRead(sessionID);
}

std::optional<CompletedRecord> MorvanePresenter::recordAt(int digit) const {
    return m_surface ? m_surface->recordAt(digit) : std::nullopt;
}

void MorvanePresenter::openMenu(const QPoint &position) {
    if (contextMenu) {
        m_surface->open(*contextMenu, position);
        if (!m_window->hearsOtherClicks()) {
            m_abandonedMenu =
                std::make_unique<AbandonedMenu>(*contextMenu, *m_surface, m_context.scheduler);
        }
    }
}

/// Follows the pointer at once, because the chosen action runs next and may open the panel.
void MorvanePresenter::menuClosed() {
    m_pointerLostAt = m_abandonedMenu ? std::optional(m_displays.pointerPosition()) : std::nullopt;
    m_abandonedMenu.reset();
    followPointer();
    if (m_window && m_window->isVisible()) {
        // Raises the window, which stayed below the menu and maybe below other windows.
        m_window->show();
    }
    // The menu may have been all that kept it on screen.
    scheduleUpdate();
}

} // namespace morvane

#include "moc_MorvanePresenter.cpp"
