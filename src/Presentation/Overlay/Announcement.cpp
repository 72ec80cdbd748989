#include "Presentation/Overlay/Announcement.h"

#include "Platform/Scheduler.h"

namespace morvane {

Announcement::Announcement(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent), m_scheduler(scheduler) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(1, 1);
    hide();
}

/// Hides the widget first, because screen readers read a notification out when it appears.
void Announcement::say(const QString &text) {
    hide();
    setAccessibleName(text);
    show();
    m_end = m_scheduler.after(duration, [this] {
        hide();
        setAccessibleName({});
    });
}

} // namespace morvane

#include "moc_Announcement.cpp"
