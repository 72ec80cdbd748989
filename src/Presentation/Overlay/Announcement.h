#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"

#include <QWidget>

namespace morvane {

class Scheduler;

/// Makes a screen reader say what has just happened, wherever it is reading: an invisible
/// notification that appears for a while.
class Announcement : public QWidget {
    Q_OBJECT

public:
    static constexpr Seconds duration{5}; ///< how long it stays to be read out

    Announcement(Scheduler &scheduler, QWidget *parent);

    void say(const QString &text);

private:
    Scheduler &m_scheduler;
    Task m_end;
};

} // namespace morvane
