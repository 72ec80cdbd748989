#pragma once

#include "Platform/MotionPreference.h"

namespace morvane {

/// A desktop on which a test asks for less motion.
class FakeMotionPreference : public MotionPreference {
public:
    bool isReduced() const override { return m_isReduced; }

    void setReduced(bool isReduced) {
        m_isReduced = isReduced;
        emit changed();
    }

private:
    bool m_isReduced = false;
};

} // namespace morvane
