#include "Core/Agents/PaneLocator.h"

#include <QStringList>

namespace morvane {

std::optional<QString> PaneLocator::tmuxSocket() const {
    if (!tmuxServer) {
        return std::nullopt;
    }
    const QStringList pieces = tmuxServer->split(QLatin1Char(','), Qt::SkipEmptyParts);
    return pieces.isEmpty() ? std::nullopt : std::optional(pieces.first());
}

} // namespace morvane
