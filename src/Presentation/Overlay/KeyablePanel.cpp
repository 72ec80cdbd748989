#include "Presentation/Overlay/KeyablePanel.h"

#include <utility>

namespace morvane {

bool KeyablePanel::makeKey() {
    if (!onTakeKeyboard || !onTakeKeyboard()) {
        return false;
    }
    ++m_users;
    return true;
}

bool KeyablePanel::renewKey() {
    return m_users > 0 && onTakeKeyboard && onTakeKeyboard();
}

void KeyablePanel::resignKey() {
    if (m_users > 0 && --m_users == 0 && onReleaseKeyboard) {
        onReleaseKeyboard();
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
