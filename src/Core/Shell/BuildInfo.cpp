#include "Core/Shell/BuildInfo.h"

namespace morvane::BuildInfo {

QString version() {
    return QStringLiteral(MORVANE_VERSION);
}

QString build() {
    return QStringLiteral(MORVANE_BUILD);
}

} // namespace morvane::BuildInfo
