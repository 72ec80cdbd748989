#include "Presentation/Panel/CompactStatusView.h"

#include "Core/Sessions/SessionStore.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Style/StateLook.h"

namespace morvane {

namespace {

constexpr double pixel = 2;

} // namespace

CompactStatusView::CompactStatusView(const PanelContext &context, QWidget *parent)
    : PixelAnimator(context.timeline, context.scheduler, context.motion, pixel, parent),
      m_store(context.store) {}

void CompactStatusView::refresh() {
    setMode({m_store.aggregatedState()}, m_store.aggregatedStateSince());
    setAccessibleName(StateLook::of(m_store.aggregatedState()).word);
}

} // namespace morvane
