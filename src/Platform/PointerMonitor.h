#pragma once

#include <QObject>

namespace morvane {

/// Tells when the pointer moves, wherever on the desktop it is. Costs something with each movement,
/// so it only works while somebody needs it. Main thread.
class PointerMonitor : public QObject {
    Q_OBJECT

public:
    /// Counted: what is activated twice has to be deactivated twice.
    virtual void activate() = 0;
    virtual void deactivate() = 0;

signals:
    /// The pointer has moved, or is moving; tells of the place it rests at in any case.
    void moved();
};

} // namespace morvane
