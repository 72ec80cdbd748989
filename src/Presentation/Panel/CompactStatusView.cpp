#include "Presentation/Panel/CompactStatusView.h"

#include "Core/Sessions/SessionStore.h"
#include "Presentation/Mascot/PixelAnimator.h"
#include "Presentation/Mascot/StateMarkView.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Style/ReadAsText.h"
#include "Presentation/Style/StateLook.h"

#include <QHBoxLayout>

namespace morvane {

namespace {

constexpr double mascotPixel = 2;

} // namespace

CompactStatusView::CompactStatusView(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_store(context.store),
      m_mascot(new PixelAnimator(context.timeline, context.scheduler, context.motion, mascotPixel,
                                 this)),
      m_mark(new StateMarkView(this)) {
    readAsText(*this);
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(5);
    line->addWidget(m_mascot);
    line->addWidget(m_mark);
}

void CompactStatusView::refresh() {
    const auto state = m_store.aggregatedState();
    m_mascot->setMode({state}, m_store.aggregatedStateSince());
    m_mark->setState(state);
    setAccessibleName(StateLook::of(state).word);
}

} // namespace morvane

#include "moc_CompactStatusView.cpp"
