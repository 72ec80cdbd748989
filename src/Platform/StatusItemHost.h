#pragma once

#include <QObject>

namespace morvane {

/// The part of the desktop that shows status items, which may come and go at any time, and which
/// not every desktop has. Main thread.
class StatusItemHost : public QObject {
    Q_OBJECT

public:
    virtual bool isPresent() const = 0;

signals:
    void presenceChanged();
};

} // namespace morvane
