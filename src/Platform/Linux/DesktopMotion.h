#pragma once

#include "Platform/MotionPreference.h"

namespace morvane {

/// What the desktop's settings portal says about animations. Owned by the application.
class DesktopMotion : public MotionPreference {
    Q_OBJECT

public:
    bool isReduced() const override { return m_isReduced; }

private:
    bool m_isReduced = false;
};

} // namespace morvane
