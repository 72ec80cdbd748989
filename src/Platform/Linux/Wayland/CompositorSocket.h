#pragma once

#include "Platform/Descriptor.h"
#include "Platform/Task.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <optional>

namespace morvane {

class Scheduler;

/// A connection to the socket of a compositor. Main thread, which doesn't wait for it.
class CompositorSocket : public QObject {
    Q_OBJECT

public:
    explicit CompositorSocket(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// `opened` or `refused` follows, as a rule at once. While the compositor's backlog is full, it
    /// tries again until `close`.
    void open(const QString &path);

    bool isOpen() const { return m_notifier != nullptr; }

    /// True if all bytes were sent. The few bytes that are sent always fit, unless the other end
    /// doesn't read.
    bool send(const QByteArray &bytes) const;

    /// No signal follows.
    void close();

signals:
    void opened();

    /// Nobody listens.
    void refused();

    /// Emitted with up to 64 KiB at once.
    void received(const QByteArray &bytes);

    /// The other end has closed it.
    void closed();

private:
    void tryToOpen();
    void read();

    Scheduler &m_scheduler;
    QString m_path;
    Task m_retry;
    std::optional<Descriptor> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< for reading, while the socket is open
};

} // namespace morvane
