#pragma once

#include "Platform/StatusItemHost.h"

namespace morvane {

/// A desktop that has a place for status items when the test says so.
class FakeStatusItemHost : public StatusItemHost {
public:
    bool isPresent() const override { return m_isPresent; }
    void setPresent(bool isPresent) {
        m_isPresent = isPresent;
        emit presenceChanged();
    }

private:
    bool m_isPresent = false;
};

} // namespace morvane
