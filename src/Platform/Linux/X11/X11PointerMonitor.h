#pragma once

#include "Platform/PointerMonitor.h"
#include "Platform/Scheduler.h"

#include <QPoint>

#include <optional>

namespace morvane {

class X11Connection;

/// The pointer of an X server, by the raw motion of all mice. A mouse sends that up to a thousand
/// times a second, so after the first event this stops listening, asks for the pointer 20 times a
/// second until it rests, and only then listens again. Owned by the application; the connection and
/// the scheduler must outlive it.
class X11PointerMonitor : public PointerMonitor {
    Q_OBJECT

public:
    X11PointerMonitor(X11Connection &x11, Scheduler &scheduler);

    void activate() override;
    void deactivate() override;

private:
    void follow();
    void check();
    std::optional<QPoint> position() const;

    X11Connection &m_x11;
    Scheduler &m_scheduler;
    int m_users = 0;
    std::optional<QPoint> m_lastPosition;
    Task m_check;
};

} // namespace morvane
