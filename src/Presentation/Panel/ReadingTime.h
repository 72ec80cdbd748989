#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"

#include <QRect>
#include <QRegion>
#include <QWidget>

namespace morvane {

class Scheduler;

/// Says whether something that a person is to answer has stood where it stands, as it stands, for
/// long enough to be read: 0.7 seconds. A click that was meant for what was there before comes
/// sooner. Whatever moves the widget, uncovers more of it or changes its size begins the time anew,
/// and so does its owner when the content changes. It isn't over either before every part of that
/// content has been in sight, and the name of the row that the widget stands in: it says whose
/// question it is. Nothing ticks once the time is over.
class ReadingTime : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds length{0.7};

    /// Watches the widget, which owns it.
    ReadingTime(Scheduler &scheduler, QWidget &prompt);

    /// Looks once more before it says yes.
    bool isOver();

    /// The content has changed.
    void startAnew();

signals:
    /// It has become over, or is no longer.
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
    bool hasGivenUp() const;
    void stop();

    Scheduler &m_scheduler;
    QWidget &m_prompt;
    Place m_place;
    QRegion m_seen; ///< of the widget, since its content has changed
    bool m_hasSeenName = false;
    int m_looks = 0; ///< in a row that have found it as it was
    bool m_isOver = false;
    Task m_nextLook;
};

} // namespace morvane
