#pragma once

#include <QObject>

#include <utility>

namespace morvane {

/// The file that this program was started from, which an upgrade may replace while it runs. This
/// base class never reports a replacement. Main thread.
class ProgramFile : public QObject {
    Q_OBJECT

public:
    /// Checks the file now; may emit `replaced`.
    virtual void look() {}

signals:
    /// Another file has taken its place since the program started. Emitted once.
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
