#include "Presentation/Floating/CapsuleState.h"

#include "Presentation/Overlay/InlineEditing.h"

namespace morvane {

namespace {

constexpr Seconds collapseDelay(0.15);
constexpr Seconds editingInterval(0.25);

} // namespace

void CapsuleState::setHovering(bool hovering) {
    if (hovering) {
        open();
        return;
    }
    m_collapseTask = m_scheduler.after(collapseDelay, [this] { collapseUnlessEditing(); });
}

void CapsuleState::open() {
    m_collapseTask.cancel();
    setExpanded(true);
}

void CapsuleState::collapseUnlessEditing() {
    if (m_editing.isActive(m_scheduler.now())) {
        m_collapseTask = m_scheduler.after(editingInterval, [this] { collapseUnlessEditing(); });
    } else {
        setExpanded(false);
    }
}

void CapsuleState::setExpanded(bool expanded) {
    if (expanded != m_isExpanded) {
        m_isExpanded = expanded;
        emit expandedChanged(expanded);
    }
}

} // namespace morvane

#include "moc_CapsuleState.cpp"
