#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"

#include <QRect>
#include <QRegion>
#include <QWidget>

namespace morvane {

class Scheduler;

/// Tells whether a prompt has been shown unchanged, in the same place, long enough to be read: 0.7
/// seconds. A click that was meant for what was there before comes sooner. Whatever moves the
/// widget, resizes it or uncovers more of it restarts the time, and so does its owner when the
/// content changes. The time isn't over either before every part of that content has been in sight,
/// and so has the name of the row that the widget is in, which says whose question it is. No timer
/// runs once the time is over.
class ReadingTime : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds length{0.7};

    /// Watches the widget, which owns it.
    ReadingTime(Scheduler &scheduler, QWidget &prompt);

    /// Checks the place once more before it returns true.
    bool isOver();

    /// Forgets what has been seen and restarts the time, because the content has changed.
    void startAnew();

signals:
    /// The time is over, or that is no longer so.
    void changed(bool isOver);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Where the widget is on the desktop, and what can be seen of it.
    struct Place {
        QRect frame;
        QRect visible;

        friend bool operator==(const Place &, const Place &) = default;
    };

    Place place() const;
    bool showsName() const;
    void watchAncestors();
    void waitAnew();
    void look();
    void lookLater();
    bool hasStoppedUnseen() const;
    void stop();

    Scheduler &m_scheduler;
    QWidget &m_prompt;
    Place m_place;
    QRegion m_seen; ///< parts of the widget, since its content changed
    bool m_hasSeenName = false;
    int m_looks = 0; ///< in a row that found the place unchanged
    bool m_isOver = false;
    Task m_nextLook;
};

} // namespace morvane
