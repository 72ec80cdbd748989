#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/Wayland/CompositorSocket.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// The full-screen windows of a compositor whose events on a socket say that something may have
/// changed, and whose answer to a query says what. There are none once it is gone or sends garbage.
class FollowedFullscreenWindows : public FullscreenWindows {
    Q_OBJECT

public:
    void follow() override;

protected:
    using Told = std::function<void(const QList<QRect> &areas)>;

    /// Takes the path of the event socket.
    FollowedFullscreenWindows(QString socket, Scheduler &scheduler);

    /// Called when the event socket is connected.
    virtual void begin(CompositorSocket &events) = 0;

    /// Removes the complete events from the beginning of `heard`. Returns whether windows may have
    /// changed; none if the bytes make no sense.
    virtual std::optional<bool> take(QByteArray &heard) = 0;

    /// Calls `told` once with the answer, after this call has returned.
    virtual void ask(const Told &told) = 0;

    void refresh();

private:
    void read(const QByteArray &bytes);
    void lose();

    const QString m_eventsPath;
    CompositorSocket m_events;
    QByteArray m_heard; ///< the beginning of an incomplete event
    bool m_isAsking = false;
    bool m_isStale = false; ///< something happened since the pending query was sent
};

} // namespace morvane
