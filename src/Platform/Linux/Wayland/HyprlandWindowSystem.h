#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QByteArray>
#include <QObject>

#include <utility>

namespace morvane {

class Scheduler;

/// The windows of Hyprland, listed and activated over Hyprland's own socket.
class HyprlandWindowSystem : public WindowSystem {
public:
    HyprlandWindowSystem(QString socket, Scheduler &scheduler)
        : m_socket(std::move(socket)), m_scheduler(scheduler) {}

    /// Where the instance of this name (HYPRLAND_INSTANCE_SIGNATURE) listens; empty where none
    /// does.
    static QString socketOf(const QString &instance);

    void list(Listed listed) override;
    void activate(const QString &id) override;

    /// The windows of an answer to "j/clients", the most recently focused first. Their ids are
    /// their addresses.
    static QList<Window> windows(const QByteArray &answer);

private:
    const QString m_socket; ///< the socket's path
    Scheduler &m_scheduler;
    QObject m_context; ///< its destruction drops pending answers
};

} // namespace morvane
