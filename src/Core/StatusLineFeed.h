#pragma once

#include <QString>

namespace morvane {

/// The key of an agent's settings file under which it takes a status line command.
struct StatusLineFeed {
    QString key;

    friend bool operator==(const StatusLineFeed &, const StatusLineFeed &) = default;
};

} // namespace morvane
