#pragma once

#include <QStringView>

#include <optional>
#include <tuple>

namespace morvane {

/// The number of an agent's release, as its package or its folder says it.
struct AgentRelease {
    int major = 0;
    int minor = 0;
    int patch = 0;

    /// What the text begins with: three numbers with dots between them, and then its end, a "-" or
    /// a "+", as in "0.169.0-linux-x64". None for any other text.
    static std::optional<AgentRelease> parse(QStringView text);

    friend bool operator==(const AgentRelease &, const AgentRelease &) = default;
    friend bool operator<(const AgentRelease &left, const AgentRelease &right) {
        return std::tie(left.major, left.minor, left.patch) <
               std::tie(right.major, right.minor, right.patch);
    }
};

} // namespace morvane
