#include "Environment.h"

#include "HeaderText.h"

#include <cstddef>

namespace morvane {

char *Environment::find(std::string_view name) const {
    for (char **variable = m_variables; *variable != nullptr; ++variable) {
        size_t same = 0;
        while (same < name.size() && (*variable)[same] == name[same])
            ++same;
        if (same == name.size() && (*variable)[same] == '=')
            return *variable + same + 1;
    }
    return nullptr;
}

std::string_view Environment::raw(std::string_view name) const {
    const char *value = find(name);
    return value == nullptr ? std::string_view{} : std::string_view{value};
}

std::string_view Environment::text(std::string_view name) const {
    char *value = find(name);
    return value == nullptr ? std::string_view{} : cleaned(value);
}

} // namespace morvane
