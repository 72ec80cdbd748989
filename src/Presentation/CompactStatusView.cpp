#include "Presentation/CompactStatusView.h"

#include "Core/SessionStore.h"
#include "Presentation/PanelContext.h"

namespace morvane {

namespace {

constexpr double pixel = 2;

} // namespace

CompactStatusView::CompactStatusView(const PanelContext &context, QWidget *parent)
    : PixelAnimator(context, pixel, parent), m_store(context.store) {}

void CompactStatusView::refresh() {
    setMode({m_store.aggregatedState()}, m_store.aggregatedStateSince());
}

} // namespace morvane
