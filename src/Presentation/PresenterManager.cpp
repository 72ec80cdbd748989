#include "Presentation/PresenterManager.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/Scheduler.h"
#include "Presentation/Floating/FloatingPresenter.h"
#include "Presentation/Notch/NotchPresenter.h"
#include "Presentation/Overlay/Announcement.h"
#include "Presentation/Panel/SessionSubtitle.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds reconcileDelay(0.5);

QString newsOf(const Session &session) {
    return BoundedText::of(session.displayName(), BoundedText::lineLength) + QStringLiteral(", ") +
           SessionSubtitle::of(session).status;
}

} // namespace

PresenterManager::PresenterManager(PanelContext context, Displays &displays,
                                   OverlayWindows &overlays, PointerMonitor &pointer)
    : m_context(std::move(context)), m_displays(displays), m_overlays(overlays),
      m_pointer(pointer) {}

PresenterManager::~PresenterManager() = default;

void PresenterManager::start() {
    m_displayMode = m_context.settings.displayMode();
    reconcile();
    connect(&m_context.store, &SessionStore::stateChanges, this,
            [this](SessionState, const QString &sessionID) { announce(sessionID); });
    connect(&m_displays, &Displays::changed, this, &PresenterManager::scheduleReconcile);
    connect(&m_context.settings, &MorvaneSettings::changed, this, [this] {
        if (m_context.settings.displayMode() != m_displayMode) {
            m_displayMode = m_context.settings.displayMode();
            scheduleReconcile();
        }
    });
}

bool PresenterManager::hasBeenRead(const QString &sessionID) const {
    return std::ranges::any_of(
        m_presenters, [&](const auto &entry) { return entry.second->hasBeenRead(sessionID); });
}

std::optional<CompletedRecord> PresenterManager::recordAt(int digit) const {
    for (const auto &[display, presenter] : m_presenters) {
        if (const auto record = presenter->recordAt(digit)) {
            return record;
        }
    }
    return std::nullopt;
}

void PresenterManager::presentPanel() {
    if (auto *presenter = presenterAtPointer()) {
        presenter->presentPanel();
    }
}

void PresenterManager::presentPanelToKeys() {
    if (auto *presenter = presenterAtPointer()) {
        presenter->presentPanelToKeys();
    }
}

MorvanePresenter *PresenterManager::presenterAtPointer() const {
    const QList<Display> displays = m_displays.displays();
    if (displays.isEmpty() || m_presenters.empty()) {
        return nullptr;
    }
    const QPoint pointer = m_displays.pointerPosition();
    const auto under = std::ranges::find_if(
        displays, [&](const Display &display) { return display.frame.contains(pointer); });
    const auto target =
        m_presenters.find(under != displays.end() ? under->id : displays.first().id);
    return (target != m_presenters.end() ? target : m_presenters.begin())->second.get();
}

/// A new announcement cuts off the one that is being read out, so it repeats recent requests that
/// nobody has answered yet.
void PresenterManager::announce(const QString &sessionID) {
    auto *presenter = presenterAtPointer();
    if (presenter == nullptr) {
        return;
    }
    const Date recently = m_context.scheduler.now() - Announcement::duration;
    QStringList news;
    for (const Session &session : m_context.store.activeSessions()) {
        if (session.id != sessionID && session.state == SessionState::needsInput &&
            session.stateChangedAt > recently) {
            news.append(newsOf(session));
        }
    }
    news.append(newsOf(m_context.store.sessions().value(sessionID)));
    presenter->announce(news.join(u'\n'));
}

void PresenterManager::setContextMenu(QMenu *menu) {
    m_contextMenu = menu;
    for (const auto &[display, presenter] : m_presenters) {
        presenter->contextMenu = menu;
    }
}

void PresenterManager::setStandIn(StandIn standIn) {
    m_standIn = standIn;
    for (const auto &[display, presenter] : m_presenters) {
        presenter->setStandIn(standIn);
    }
}

void PresenterManager::collapseAllExpanded() {
    for (const auto &[display, presenter] : m_presenters) {
        presenter->collapseExpanded();
    }
}

void PresenterManager::dismissAll() {
    for (const auto &[display, presenter] : m_presenters) {
        presenter->dismiss();
    }
}

void PresenterManager::scheduleReconcile() {
    m_reconcileWork = m_context.scheduler.after(reconcileDelay, [this] { reconcile(); });
}

void PresenterManager::reconcile() {
    std::map<std::uint32_t, Display> wanted;
    for (const Display &display : m_displays.displays()) {
        if (isWanted(display)) {
            wanted.emplace(display.id, display);
        }
    }
    std::erase_if(m_presenters, [&](const auto &entry) {
        const bool isGone = !wanted.contains(entry.first);
        if (isGone) {
            entry.second->detach();
        }
        return isGone;
    });
    for (const auto &[id, display] : wanted) {
        auto &presenter = m_presenters[id];
        if (!presenter) {
            presenter = makePresenter(display);
        }
        presenter->attach(display);
    }
    const bool isShown = std::ranges::any_of(
        m_presenters, [](const auto &entry) { return entry.second->canShow(); });
    if (std::exchange(m_isShown, isShown) != isShown) {
        emit shownChanged(isShown);
    }
}

bool PresenterManager::isWanted(const Display &display) const {
    switch (m_displayMode) {
    case DisplayTargetMode::all:
        return true;
    case DisplayTargetMode::builtinOnly:
        return display.isBuiltin;
    case DisplayTargetMode::externalOnly:
        return !display.isBuiltin;
    }
    return false;
}

std::unique_ptr<MorvanePresenter> PresenterManager::makePresenter(const Display &display) {
    auto presenter = makeKind(display);
    connect(presenter.get(), &MorvanePresenter::expandedChanged, this,
            &PresenterManager::expandedChanged);
    presenter->contextMenu = m_contextMenu;
    presenter->setStandIn(m_standIn);
    return presenter;
}

std::unique_ptr<MorvanePresenter> PresenterManager::makeKind(const Display &display) {
    if (display.isBuiltin && display.topSafeAreaInset > 0) {
        return std::make_unique<NotchPresenter>(m_context, m_displays, m_overlays, m_pointer);
    }
    return std::make_unique<FloatingPresenter>(m_context, m_displays, m_overlays,
                                               display.isBuiltin
                                                   ? FloatingPresenter::Flavour::ambient
                                                   : FloatingPresenter::Flavour::onCall);
}

} // namespace morvane

#include "moc_PresenterManager.cpp"
