#pragma once

#include "Platform/HotKey.h"

#include <QObject>

namespace morvane {

/// Keys that reach this program whichever has the focus, and then no other. Main thread.
class HotKeys : public QObject {
    Q_OBJECT

public:
    enum class State {
        pending,     ///< the desktop hasn't answered yet
        works,       ///< presses come in
        taken,       ///< another program has it
        unavailable, ///< the desktop gives away no such key
    };

    /// Takes a key until `unregisterKey`. What it is for is told to desktops that ask the person
    /// for it; a key without a purpose is one that is only needed for a moment, which such desktops
    /// don't have. The result is never used for another key.
    virtual std::uint32_t registerKey(const HotKey &key, const QString &purpose) = 0;

    virtual void unregisterKey(std::uint32_t id) = 0;

    virtual State state(std::uint32_t id) const = 0;

    /// Whether the desktop alone says which keys they are; what is asked for is a proposal then.
    virtual bool desktopChoosesKeys() const = 0;

    /// Asks once more for the keys that were taken: whoever had them may be gone.
    virtual void retry() = 0;

signals:
    /// Once for each press, however long the key is held down.
    void pressed(std::uint32_t id);

    /// Told when the states of all keys are what they are to be: a slot may take keys and give them
    /// back.
    void stateChanged(std::uint32_t id);
};

} // namespace morvane
