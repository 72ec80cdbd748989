#include "Presentation/InlineEditing.h"

namespace morvane {

InlineEditing &InlineEditing::shared() {
    static InlineEditing instance;
    return instance;
}

bool InlineEditing::isActive(Date now) const {
    return m_count >= 1 && m_openedAt && now - *m_openedAt < lease;
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
