#pragma once

#include <QString>

namespace morvane {

/// The setting of an agent that turns off its own desktop notifications, and the value for "off".
struct NotificationMute {
    QString key;
    QString value;

    friend bool operator==(const NotificationMute &, const NotificationMute &) = default;
};

} // namespace morvane
