#include "Presentation/Overlay/InlineEditing.h"

#include <algorithm>

namespace morvane {

InlineEditing &InlineEditing::shared() {
    static InlineEditing instance;
    return instance;
}

Seconds InlineEditing::rest(Date now) const {
    if (m_count == 0 || !m_openedAt) {
        return Seconds(0);
    }
    return std::max(Seconds(0), Seconds(lease - (now - *m_openedAt)));
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

} // namespace morvane

#include "moc_InlineEditing.cpp"
