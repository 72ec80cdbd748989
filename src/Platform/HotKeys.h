#pragma once

#include "Platform/HotKey.h"

#include <QObject>

namespace morvane {

/// Keys that reach this program, and no other, whichever program has the focus. Main thread.
class HotKeys : public QObject {
    Q_OBJECT

public:
    enum class State {
        pending,     ///< the desktop hasn't answered yet
        works,       ///< presses come in
        taken,       ///< another program has it
        unavailable, ///< the desktop doesn't offer this key
    };

    /// Takes a key until `unregisterKey`. Desktops that ask the person for permission show the
    /// purpose. An empty purpose marks a key that is needed only for a moment, which such desktops
    /// don't offer. The id returned is never used for another key.
    virtual std::uint32_t registerKey(const HotKey &key, const QString &purpose) = 0;

    virtual void unregisterKey(std::uint32_t id) = 0;

    virtual State state(std::uint32_t id) const = 0;

    /// True when the desktop decides which keys to use; the requested ones are then only proposals.
    virtual bool desktopChoosesKeys() const = 0;

    /// Asks once more for the keys that were taken: whoever had them may be gone.
    virtual void retry() = 0;

signals:
    /// Once for each press, however long the key is held down.
    void pressed(std::uint32_t id);

    /// Emitted once the states of all keys are up to date, so a slot may register and unregister
    /// keys.
    void stateChanged(std::uint32_t id);
};

} // namespace morvane
