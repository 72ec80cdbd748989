#pragma once

#include <QObject>

namespace morvane {

/// Whether the digit keys work at this moment; the rows show them only then. Updated by whoever
/// registers the keys; main thread.
class DigitShortcuts : public QObject {
    Q_OBJECT

public:
    bool areWorking() const { return m_areWorking; }

    void setWorking(bool areWorking) {
        if (areWorking != m_areWorking) {
            m_areWorking = areWorking;
            emit changed();
        }
    }

signals:
    void changed();

private:
    bool m_areWorking = false;
};

} // namespace morvane
