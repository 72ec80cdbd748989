#include "Presentation/Overlay/KeyablePanel.h"

namespace morvane {

bool KeyablePanel::makeKey() {
    if (!onTakeKeyboard || !onTakeKeyboard()) {
        return false;
    }
    ++m_fields;
    return true;
}

void KeyablePanel::renewKey() {
    if (m_fields > 0 && onTakeKeyboard) {
        static_cast<void>(onTakeKeyboard());
    }
}

void KeyablePanel::resignKey() {
    if (m_fields > 0 && --m_fields == 0 && onReleaseKeyboard) {
        onReleaseKeyboard();
    }
}

} // namespace morvane
