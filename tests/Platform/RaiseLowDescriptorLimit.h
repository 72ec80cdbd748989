#pragma once

#include "Platform/Linux/DescriptorLimit.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace morvane {

/// Sets the limit of this process to a low one that no machine has, raises it as the program does,
/// and yields the low one as a shell's "ulimit -n" prints it.
inline QByteArray raiseLowDescriptorLimit() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = 511;
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    raiseDescriptorLimit();
    return "511";
}

} // namespace morvane
