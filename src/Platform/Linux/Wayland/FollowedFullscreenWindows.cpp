#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

#include <utility>

namespace morvane {

namespace {

constexpr qsizetype longestEvent = 1048576;

} // namespace

FollowedFullscreenWindows::FollowedFullscreenWindows(QString socket, Scheduler &scheduler)
    : m_eventsPath(std::move(socket)), m_events(scheduler) {
    connect(&m_events, &CompositorSocket::opened, this, [this] { begin(m_events); });
    connect(&m_events, &CompositorSocket::received, this, &FollowedFullscreenWindows::read);
    connect(&m_events, &CompositorSocket::closed, this, &FollowedFullscreenWindows::lose);
}

void FollowedFullscreenWindows::follow() {
    if (!m_events.isOpen()) {
        m_events.open(m_eventsPath);
    }
}

void FollowedFullscreenWindows::read(const QByteArray &bytes) {
    m_heard += bytes;
    const auto mayHaveChanged = take(m_heard);
    if (!mayHaveChanged || m_heard.size() > longestEvent) {
        lose();
    } else if (*mayHaveChanged) {
        refresh();
    }
}

void FollowedFullscreenWindows::lose() {
    m_events.close();
    m_heard.clear();
    setAreas({});
}

void FollowedFullscreenWindows::refresh() {
    m_isStale = m_isAsking;
    if (m_isAsking) {
        return;
    }
    m_isAsking = true;
    ask([this](const QList<QRect> &areas) {
        m_isAsking = false;
        setAreas(m_events.isOpen() ? areas : QList<QRect>());
        if (m_isStale) {
            refresh();
        }
    });
}

} // namespace morvane

#include "moc_FollowedFullscreenWindows.cpp"
