#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"

#include <QWidget>

namespace morvane {

class Scheduler;

/// Tells a screen reader, wherever it is reading, what has just happened: a notification that comes
/// to be there, and that nobody sees.
class Announcement : public QWidget {
    Q_OBJECT

public:
    static constexpr Seconds duration{5}; ///< for which it is there to be read out

    Announcement(Scheduler &scheduler, QWidget *parent);

    void say(const QString &text);

private:
    Scheduler &m_scheduler;
    Task m_end;
};

} // namespace morvane
