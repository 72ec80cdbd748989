#pragma once

#include <QObject>

#include <utility>

namespace morvane {

/// The file that this program was started from, which an upgrade replaces under its feet. This one
/// stays as it is. Main thread.
class ProgramFile : public QObject {
    Q_OBJECT

public:
    /// Looks now; `replaced` may follow at once.
    virtual void look() {}

signals:
    /// Another file has been put into its place since the program started. Told once.
    void replaced();

protected:
    void setReplaced() {
        if (!std::exchange(m_isReplaced, true)) {
            emit replaced();
        }
    }

private:
    bool m_isReplaced = false;
};

} // namespace morvane
