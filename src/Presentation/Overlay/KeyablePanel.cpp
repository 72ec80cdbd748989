#include "Presentation/Overlay/KeyablePanel.h"

#include "Platform/OverlayWindow.h"

#include <utility>

namespace morvane {

bool KeyablePanel::takeKeyboard() const {
    return m_overlay != nullptr && m_overlay->takeKeyboard();
}

bool KeyablePanel::makeKey() {
    if (!takeKeyboard()) {
        return false;
    }
    ++m_users;
    return true;
}

bool KeyablePanel::renewKey() {
    return m_users > 0 && takeKeyboard();
}

void KeyablePanel::resignKey() {
    if (m_users > 0 && --m_users == 0 && m_overlay != nullptr) {
        m_overlay->releaseKeyboard();
    }
}

bool KeyablePanel::beginKeyboardUse() {
    if (m_isUsedByKeys) {
        return renewKey();
    }
    m_isUsedByKeys = makeKey();
    return m_isUsedByKeys;
}

void KeyablePanel::endKeyboardUse() {
    if (std::exchange(m_isUsedByKeys, false)) {
        resignKey();
    }
}

} // namespace morvane

#include "moc_KeyablePanel.cpp"
