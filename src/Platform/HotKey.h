#pragma once

#include <QString>

#include <cstdint>

namespace morvane {

/// A key by its position on the keyboard, whatever the current layout, with the modifiers held
/// down.
struct HotKey {
    std::uint32_t keyCode = 0; ///< as in the kernel's input-event-codes.h
    QString symbol = {};       ///< its label on a Latin keyboard, such as "G"
    bool super = false;
    bool control = false;
    bool alt = false;
    bool shift = false;

    friend bool operator==(const HotKey &, const HotKey &) = default;
};

} // namespace morvane
