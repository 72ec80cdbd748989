#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"
#include "Platform/Linux/Wayland/CompositorSocket.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace morvane {

/// Those of a compositor whose events on a socket say that something may have changed, and whose
/// answer to a question says what. One that has gone, or talks nonsense, has none.
class FollowedFullscreenWindows : public FullscreenWindows {
    Q_OBJECT

public:
    void follow() override;

protected:
    using Told = std::function<void(const QList<QRect> &areas)>;

    /// Takes the path of the socket of the events.
    FollowedFullscreenWindows(QString socket, Scheduler &scheduler);

    /// The events' socket has been reached.
    virtual void begin(CompositorSocket &events) = 0;

    /// Takes the whole events off the beginning of what was heard. Says whether windows may have
    /// changed; none where it is nonsense.
    virtual std::optional<bool> take(QByteArray &heard) = 0;

    /// `told` hears the answer, once and later.
    virtual void ask(const Told &told) = 0;

    void refresh();

private:
    void read(const QByteArray &bytes);
    void lose();

    const QString m_eventsPath;
    CompositorSocket m_events;
    QByteArray m_heard; ///< of an event that isn't whole yet
    bool m_isAsking = false;
    bool m_isStale = false; ///< something happened since the question that is on its way
};

} // namespace morvane
