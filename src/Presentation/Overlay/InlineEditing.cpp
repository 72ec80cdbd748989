#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>

namespace morvane {

InlineEditing &InlineEditing::shared() {
    static InlineEditing instance;
    return instance;
}

Seconds InlineEditing::restOfLease(std::optional<Date> &since, Date now) {
    if (!since) {
        return Seconds(0);
    }
    since = std::min(*since, now);
    return std::max(Seconds(0), Seconds(lease - (now - *since)));
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
        m_openedAt = now;
    }
}

} // namespace morvane

#include "moc_InlineEditing.cpp"
