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

    /// Also false if the program to start no longer exists.
    virtual bool isEnabled() const = 0;

    /// Has the program started at every login from now on, from the path where it runs at this
    /// moment.
    virtual Result<void> registerItem() = 0;

    /// Has the program no longer started at login. Succeeds if there is nothing to do.
    virtual Result<void> unregisterItem() = 0;
};

} // namespace morvane
