#pragma once

#include "Platform/Linux/DescriptorLimit.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace morvane {

/// Raises the limit of this process from one that it is given for that, and that no machine has.
/// Returns that one, as a shell's "ulimit -n" does.
inline QByteArray raiseLowDescriptorLimit() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = 511;
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    raiseDescriptorLimit();
    return QByteArray::number(qulonglong(limit.rlim_cur));
}

} // namespace morvane
