#include "Presentation/CapsuleState.h"

namespace morvane {

namespace {

constexpr Seconds collapseDelay(0.15);

} // namespace

void CapsuleState::setHovering(bool hovering) {
    if (hovering) {
        open();
        return;
    }
    m_collapseTask = m_scheduler.after(collapseDelay, [this] { setExpanded(false); });
}

void CapsuleState::open() {
    m_collapseTask.cancel();
    setExpanded(true);
}

void CapsuleState::setExpanded(bool expanded) {
    if (expanded != m_isExpanded) {
        m_isExpanded = expanded;
        emit expandedChanged(expanded);
    }
}

} // namespace morvane
