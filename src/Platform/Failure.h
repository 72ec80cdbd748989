#pragma once

#include <QString>

namespace morvane {

/// Why an operation failed, in one sentence or phrase for a person.
struct Failure {
    QString message;

    friend bool operator==(const Failure &, const Failure &) = default;
};

} // namespace morvane
