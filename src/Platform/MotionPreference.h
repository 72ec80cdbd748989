#pragma once

#include <QObject>

namespace morvane {

/// Whether the person has asked the desktop for less motion on the screen. Main thread.
class MotionPreference : public QObject {
    Q_OBJECT

public:
    virtual bool isReduced() const = 0;

signals:
    void changed();
};

} // namespace morvane
