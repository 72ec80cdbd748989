#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"
#include "Support/Printing.h"
#include "Support/WaitUntil.h"

namespace morvane {

/// The windows that a window system lists: the id, the title, the names and the process of each.
/// None where the list isn't complete.
inline std::optional<QStringList> listed(WindowSystem &system) {
    const auto listing =
        toldBy<WindowSystem::Listing>([&](const auto &told) { system.list(told); });
    QStringList result;
    for (const WindowSystem::Window &window : listing.value_or(WindowSystem::Listing()).windows) {
        result << window.id + " " + window.title + " " + window.names.join(u',') + " " +
                      QString::number(window.process);
    }
    return listing && listing->isWhole ? std::optional(result) : std::nullopt;
}

} // namespace morvane
