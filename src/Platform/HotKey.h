#pragma once

#include <QString>

#include <cstdint>

namespace morvane {

/// A key by the place where it lies on the keyboard, whatever the layout of the moment makes of it,
/// and what is held down with it.
struct HotKey {
    std::uint32_t keyCode = 0; ///< as the kernel counts them in input-event-codes.h
    QString symbol = {};       ///< what stands on it on a Latin keyboard, such as "G"
    bool super = false;
    bool control = false;
    bool alt = false;
    bool shift = false;

    friend bool operator==(const HotKey &, const HotKey &) = default;
};

} // namespace morvane
