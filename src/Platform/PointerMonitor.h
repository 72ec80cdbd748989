#pragma once

#include <QObject>

namespace morvane {

/// Reports pointer movement anywhere on the desktop. Each movement costs something, so it works
/// only while it is activated. Main thread.
class PointerMonitor : public QObject {
    Q_OBJECT

public:
    /// Counted: what is activated twice has to be deactivated twice.
    virtual void activate() = 0;
    virtual void deactivate() = 0;

signals:
    /// The pointer has moved, or is moving. Always emitted at the place where it comes to rest.
    void moved();
};

} // namespace morvane
