#pragma once

#include <QString>

#include <optional>

namespace morvane {

/// Something that an agent still has running when its turn ends.
struct BackgroundTask {
    QString type; ///< the agent's own word, such as "subagent" or "shell"
    std::optional<QString> description;

    friend bool operator==(const BackgroundTask &, const BackgroundTask &) = default;
};

} // namespace morvane
