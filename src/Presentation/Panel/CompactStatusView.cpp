#include "Presentation/Panel/CompactStatusView.h"

#include "Core/Sessions/SessionStore.h"
#include "Presentation/Overlay/PanelContext.h"

namespace morvane {

namespace {

constexpr double pixel = 2;

QString word(std::optional<SessionState> state) {
    if (!state) {
        return CompactStatusView::tr("no sessions");
    }
    switch (*state) {
    case SessionState::working:
        return CompactStatusView::tr("working");
    case SessionState::needsInput:
        return CompactStatusView::tr("needs your input");
    case SessionState::done:
        return CompactStatusView::tr("done");
    case SessionState::failed:
        return CompactStatusView::tr("failed");
    case SessionState::idle:
        break;
    }
    return CompactStatusView::tr("idle");
}

} // namespace

CompactStatusView::CompactStatusView(const PanelContext &context, QWidget *parent)
    : PixelAnimator(context.timeline, context.scheduler, context.motion, pixel, parent),
      m_store(context.store) {}

void CompactStatusView::refresh() {
    setMode({m_store.aggregatedState()}, m_store.aggregatedStateSince());
    setAccessibleName(word(m_store.aggregatedState()));
}

} // namespace morvane
