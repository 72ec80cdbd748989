#pragma once

#include <string_view>

namespace morvane {

/// The variables of a process, of which only the values are anybody's text.
class Environment {
public:
    explicit Environment(char **variables) : m_variables(variables) {}

    /// As it stands; empty where it is not set.
    [[nodiscard]] std::string_view raw(std::string_view name) const;

    /// As a header can hold it.
    [[nodiscard]] std::string_view text(std::string_view name) const;

private:
    [[nodiscard]] char *find(std::string_view name) const;

    char **m_variables;
};

} // namespace morvane
