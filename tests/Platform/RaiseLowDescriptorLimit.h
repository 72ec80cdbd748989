#pragma once

#include "Platform/Linux/DescriptorLimit.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace morvane {

/// Raises the limit of this process from one that no machine has, and yields that as a shell's
/// "ulimit -n" says it.
inline QByteArray raiseLowDescriptorLimit() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = 511;
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    raiseDescriptorLimit();
    return "511";
}

} // namespace morvane
