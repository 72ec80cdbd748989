#pragma once

#include <QString>

#include <system_error>

namespace morvane {

/// Why an operation failed, in one sentence or phrase for a person.
struct Failure {
    QString message;

    friend bool operator==(const Failure &, const Failure &) = default;
};

/// The system's message for an errno value.
inline Failure systemFailure(int error) {
    return {QString::fromStdString(std::generic_category().message(error))};
}

} // namespace morvane
