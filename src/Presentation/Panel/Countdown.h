#pragma once

#include "Platform/Scheduler.h"
#include "Presentation/Style/TextLabel.h"

namespace morvane {

/// The whole seconds left until a waiting hook expires. Ticks once a second, only while it is on
/// screen.
class Countdown : public TextLabel {
    Q_OBJECT

public:
    Countdown(Scheduler &scheduler, QWidget *parent);

    void setExpiresAt(Date expiresAt);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void refresh();

    Scheduler &m_scheduler;
    Date m_expiresAt;
    Task m_tick;
};

} // namespace morvane
