#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// What a session learns from outside of its hooks. The rules of the states take it as a value, so
/// that they stay pure.
struct SessionSurroundings {
    /// The branch that is checked out in a working directory.
    std::function<std::optional<QString>(const QString &cwd)> gitBranch;
    /// The person's own name for a working directory.
    std::function<std::optional<QString>(const QString &cwd)> customName;
    /// The hosting application's name, for a person.
    std::function<std::optional<QString>(const std::optional<QString> &hostBundleID,
                                         const std::optional<QString> &termProgram)>
        hostAppName;
};

} // namespace morvane
