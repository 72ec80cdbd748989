#pragma once

#include "Platform/Linux/Desktop/WindowSystem.h"

#include <QByteArray>
#include <QObject>

#include <utility>

namespace morvane {

class Scheduler;

/// The windows of Hyprland, which tells and moves them on a socket of its own.
class HyprlandWindowSystem : public WindowSystem {
public:
    HyprlandWindowSystem(QString socket, Scheduler &scheduler)
        : m_socket(std::move(socket)), m_scheduler(scheduler) {}

    /// Where the instance of this name (HYPRLAND_INSTANCE_SIGNATURE) listens; empty where none
    /// does.
    static QString socketOf(const QString &instance);

    void list(Listed listed) override;
    void activate(const QString &id) override;

    /// The windows of an answer to "j/clients", from the one that had the keyboard last to the one
    /// that had it first. Their ids are their addresses.
    static QList<Window> windows(const QByteArray &answer);

private:
    const QString m_socket; ///< its path
    Scheduler &m_scheduler;
    QObject m_context; ///< with it go the answers that are still to come
};

} // namespace morvane
