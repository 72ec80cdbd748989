#pragma once

#include "Platform/Linux/Desktop/FullscreenWindows.h"

#include <QByteArray>
#include <QLocalSocket>
#include <QString>

namespace morvane {

/// Those of sway, native ones and XWayland's. Its events say that something may have changed, its
/// tree what. One that has gone, or talks nonsense, has none.
class SwayFullscreenWindows : public FullscreenWindows {
    Q_OBJECT

public:
    /// Takes the path of sway's socket.
    explicit SwayFullscreenWindows(QString socket);
    ~SwayFullscreenWindows() override;

    void follow() override;
    QList<QRect> areas() const override { return m_areas; }

private:
    void read();
    void hear(const QByteArray &message);
    void refresh();
    void setAreas(const QList<QRect> &areas);

    const QString m_socket;
    QLocalSocket m_events;
    QByteArray m_heard; ///< of a message that isn't whole yet
    bool m_isAsking = false;
    bool m_isStale = false; ///< something happened since the question that is on its way
    QList<QRect> m_areas;
};

} // namespace morvane
