#pragma once

#include "Platform/Linux/DescriptorLimit.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace morvane {

/// Raises the limit of this process, while it lives, from one that no machine has.
class RaisedDescriptorLimit {
public:
    RaisedDescriptorLimit() {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit low{511, m_before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
        raiseDescriptorLimit();
    }
    RaisedDescriptorLimit(const RaisedDescriptorLimit &) = delete;
    RaisedDescriptorLimit &operator=(const RaisedDescriptorLimit &) = delete;
    ~RaisedDescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

    /// What it was raised from, as a shell's "ulimit -n" says it.
    static QByteArray low() { return "511"; }

private:
    rlimit m_before{};
};

} // namespace morvane
