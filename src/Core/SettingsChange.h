#pragma once

#include <QByteArray>

namespace morvane {

/// What is to become of a settings file.
struct SettingsChange {
    QByteArray content;

    /// False where the change touches nothing but what is ours, so that an older backup stays.
    bool backsUp = true;

    /// True where what the file holds couldn't be understood and makes way. It is then kept beside
    /// the backup as well, under a name that no other change writes to.
    bool replacesUnreadable = false;
};

} // namespace morvane
