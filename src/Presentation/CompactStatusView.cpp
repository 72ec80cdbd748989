#include "Presentation/CompactStatusView.h"

#include "Core/SessionStore.h"
#include "Presentation/StateMark.h"

namespace morvane {

namespace {

constexpr double pixel = 2;

} // namespace

CompactStatusView::CompactStatusView(SessionStore &store, QWidget *parent)
    : PixelFrameView(pixel, parent), m_store(store) {}

void CompactStatusView::refresh() {
    const StateMark mark = StateMark::of(m_store.aggregatedState());
    setFrame(mark.frame, mark.color);
}

} // namespace morvane
