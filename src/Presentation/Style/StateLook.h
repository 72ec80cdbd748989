#pragma once

#include "Core/Sessions/SessionState.h"

#include <QColor>
#include <QCoreApplication>
#include <QString>

#include <optional>

namespace morvane {

/// How a state looks and is called, wherever it is shown. A plain value.
struct StateLook {
    Q_DECLARE_TR_FUNCTIONS(StateLook)

public:
    QColor mascot; ///< on the panel's black
    QColor tray;   ///< of the status item's icon
    QString word;  ///< for a person

    /// Without a state, where there is no session at all, it looks like an idle one.
    static StateLook of(std::optional<SessionState> state);
};

} // namespace morvane
