#include "Presentation/Overlay/InlineEditing.h"

#include "Presentation/Overlay/TimeLeft.h"

namespace morvane {

InlineEditing &InlineEditing::shared() {
    static InlineEditing instance;
    return instance;
}

Seconds InlineEditing::rest(Date now) const {
    return m_openedAt ? timeLeft(lease, *m_openedAt, now) : Seconds(0);
}

void InlineEditing::begin(Date now) {
    ++m_count;
    m_openedAt = now;
    emit countChanged();
}

void InlineEditing::end() {
    if (m_count == 0) {
        return;
    }
    --m_count;
    if (m_count == 0) {
        m_openedAt.reset();
    }
    emit countChanged();
}

void InlineEditing::renew(Date now) {
    if (m_openedAt) {
        const bool wasForgotten = !isActive(now);
        m_openedAt = now;
        if (wasForgotten) {
            emit countChanged();
        }
    }
}

} // namespace morvane

#include "moc_InlineEditing.cpp"
