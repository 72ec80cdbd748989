#pragma once

#include <string_view>

namespace morvane {

/// The environment variables of a process, whose values may be any text.
class Environment {
public:
    explicit Environment(char **variables) : m_variables(variables) {}

    /// The value as it stands; empty if the variable is not set.
    [[nodiscard]] std::string_view raw(std::string_view name) const;

    /// The value as a header can hold it.
    [[nodiscard]] std::string_view text(std::string_view name) const;

private:
    [[nodiscard]] char *find(std::string_view name) const;

    char **m_variables;
};

} // namespace morvane
