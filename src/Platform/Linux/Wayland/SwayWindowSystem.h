#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QObject>

#include <utility>

namespace morvane {

class Scheduler;

/// The windows of sway, which tells and moves them on a socket of its own.
class SwayWindowSystem : public WindowSystem {
public:
    SwayWindowSystem(QString socket, Scheduler &scheduler)
        : m_socket(std::move(socket)), m_scheduler(scheduler) {}

    void list(Listed listed) override;
    void activate(const QString &id) override;

private:
    const QString m_socket; ///< its path
    Scheduler &m_scheduler;
    QObject m_context; ///< with it go the answers that are still to come
};

} // namespace morvane
