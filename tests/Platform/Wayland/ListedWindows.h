#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"
#include "Support/Printing.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <optional>

namespace morvane {

/// What a window system tells, in the end: the id, the title, the names and the process of each.
/// None where that isn't the whole.
inline std::optional<QStringList> listed(WindowSystem &system) {
    bool isTold = false;
    std::optional<QStringList> result;
    system.list([&](const WindowSystem::Listing &listing) {
        isTold = true;
        if (!listing.isWhole) {
            return;
        }
        result.emplace();
        for (const WindowSystem::Window &window : listing.windows) {
            *result << window.id + " " + window.title + " " + window.names.join(u',') + " " +
                           QString::number(window.process);
        }
    });
    EXPECT_FALSE(isTold);
    EXPECT_TRUE(becomesTrue([&] { return isTold; }));
    return result;
}

} // namespace morvane
