#pragma once

#include <QList>
#include <QObject>
#include <QRect>

#include <utility>

namespace morvane {

/// Reports where on the screen a full-screen program is in front, on one kind of desktop. Best
/// effort; main thread.
class FullscreenWindows : public QObject {
    Q_OBJECT

public:
    /// Starts to watch. Call it only when somebody needs it, since window changes wake the program
    /// up from then on.
    virtual void follow() = 0;

    /// The rectangles of the full-screen windows, in the X screen's own pixels. None before
    /// `follow`.
    QList<QRect> areas() const { return m_areas; }

signals:
    void changed();

protected:
    void setAreas(const QList<QRect> &areas) {
        if (std::exchange(m_areas, areas) != areas) {
            emit changed();
        }
    }

private:
    QList<QRect> m_areas;
};

} // namespace morvane
