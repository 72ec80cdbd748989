#include "Presentation/Overlay/InlineEditing.h"

namespace morvane {

InlineEditing &InlineEditing::shared() {
    static InlineEditing instance;
    return instance;
}

void InlineEditing::begin(Date now) {
    ++m_count;
    m_lease.renew(now);
    emit countChanged();
}

void InlineEditing::end() {
    if (m_count == 0) {
        return;
    }
    --m_count;
    if (m_count == 0) {
        m_lease.end();
    }
    emit countChanged();
}

void InlineEditing::renew(Date now) {
    if (m_count > 0) {
        const bool wasForgotten = !isActive(now);
        m_lease.renew(now);
        if (wasForgotten) {
            emit countChanged();
        }
    }
}

} // namespace morvane

#include "moc_InlineEditing.cpp"
