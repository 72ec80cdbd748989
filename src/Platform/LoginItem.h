#pragma once

#include "Platform/Failure.h"

#include <optional>

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
    [[nodiscard]] virtual std::optional<Failure> registerItem() = 0;

    /// Has the program started at no login from now on. Nothing to do is no failure.
    [[nodiscard]] virtual std::optional<Failure> unregisterItem() = 0;
};

} // namespace morvane
