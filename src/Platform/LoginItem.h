#pragma once

#include "Platform/Result.h"

namespace morvane {

/// Whether the desktop starts this program when the person logs in. Main thread; reads and writes
/// a small file.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;
    virtual ~LoginItem() = default;

    /// False as well where what would be started isn't there any more.
    virtual bool isEnabled() const = 0;

    /// Has the program started at every login from now on, from where it runs at this moment.
    virtual Result<void> registerItem() = 0;

    /// Has the program started at no login from now on. Nothing to do is no failure.
    virtual Result<void> unregisterItem() = 0;
};

} // namespace morvane
