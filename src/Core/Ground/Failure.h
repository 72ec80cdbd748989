#pragma once

#include <QString>

#include <variant>

namespace morvane {

/// Why an operation failed, in one English sentence or phrase for a person.
struct Failure {
    QString message;
};

/// What an operation yields, or why it failed.
template <typename Value>
using Result = std::variant<Value, Failure>;

} // namespace morvane
