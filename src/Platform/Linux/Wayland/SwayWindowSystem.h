#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QObject>

#include <utility>

namespace morvane {

class Scheduler;

/// The windows of sway, listed and activated over sway's own socket.
class SwayWindowSystem : public WindowSystem {
public:
    SwayWindowSystem(QString socket, Scheduler &scheduler)
        : m_socket(std::move(socket)), m_scheduler(scheduler) {}

    void list(Listed listed) override;
    void activate(const QString &id) override;

private:
    const QString m_socket; ///< the socket's path
    Scheduler &m_scheduler;
    QObject m_context; ///< its destruction drops pending answers
};

} // namespace morvane
