#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"
#include "Support/Printing.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <optional>

namespace morvane {

/// What a window system tells, in the end: the id, the title, the names and the process of each.
inline QStringList listed(WindowSystem &system) {
    std::optional<QStringList> result;
    system.list([&](const auto &windows) {
        result.emplace();
        for (const WindowSystem::Window &window : windows) {
            *result << window.id + " " + window.title + " " + window.names.join(u',') + " " +
                           QString::number(window.process);
        }
    });
    EXPECT_EQ(result, std::nullopt);
    EXPECT_TRUE(becomesTrue([&] { return result.has_value(); }));
    return result.value_or(QStringList());
}

} // namespace morvane
