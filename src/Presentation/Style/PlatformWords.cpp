#include "Presentation/Style/PlatformWords.h"

namespace morvane {

QString PlatformWords::digitShortcut(int digit) {
    return tr("Ctrl %1").arg(digit);
}

} // namespace morvane
