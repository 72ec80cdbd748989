#include "Presentation/HostBadge.h"

#include "Presentation/Colors.h"

namespace morvane {

void HostBadge::setHost(const std::optional<QString> &name) {
    setContent(name.value_or(QString()), Colors::secondaryText);
    setAccessibleName(tr("in %1").arg(text()));
}

} // namespace morvane
