#pragma once

#include <QStringView>

#include <optional>
#include <tuple>

namespace morvane {

/// The number of an agent's release, as in its package or its folder's name.
struct AgentRelease {
    int major = 0;
    int minor = 0;
    int patch = 0;

    /// Reads the release that the text begins with: three numbers with dots between them, followed
    /// by the text's end, a "-" or a "+", as in "0.169.0-linux-x64". None for any other text.
    static std::optional<AgentRelease> parse(QStringView text);

    friend bool operator==(const AgentRelease &, const AgentRelease &) = default;
    friend bool operator<(const AgentRelease &left, const AgentRelease &right) {
        return std::tie(left.major, left.minor, left.patch) <
               std::tie(right.major, right.minor, right.patch);
    }
};

} // namespace morvane
