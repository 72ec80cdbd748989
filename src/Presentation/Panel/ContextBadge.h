#pragma once

#include "Presentation/Style/Badge.h"

namespace morvane {

struct Session;

/// Tells how large a session's context has become.
class ContextBadge : public Badge {
    Q_OBJECT

public:
    using Badge::Badge;

    /// Hidden while the session's context is unknown.
    void setSession(const Session &session);
};

} // namespace morvane
