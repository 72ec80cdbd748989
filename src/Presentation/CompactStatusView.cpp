#include "Presentation/CompactStatusView.h"

#include "Core/SessionStore.h"
#include "Presentation/PanelContext.h"
#include "Presentation/StateMark.h"

namespace morvane {

namespace {

constexpr double pixel = 2;

} // namespace

CompactStatusView::CompactStatusView(const PanelContext &context, QWidget *parent)
    : PixelFrameView(pixel, parent), m_store(context.store) {}

void CompactStatusView::refresh() {
    const StateMark mark = StateMark::of(m_store.aggregatedState());
    setFrame(mark.frame, mark.color);
}

} // namespace morvane
