#include "Platform/Linux/Wayland/FollowedFullscreenWindows.h"

#include <utility>

namespace morvane {

namespace {

constexpr qsizetype longestEvent = 1048576;
constexpr qint64 readAtOnce = 65536;

} // namespace

FollowedFullscreenWindows::FollowedFullscreenWindows(QString socket)
    : m_eventsPath(std::move(socket)) {
    m_events.setReadBufferSize(readAtOnce);
    connect(&m_events, &QLocalSocket::connected, this, [this] { begin(m_events); });
    connect(&m_events, &QLocalSocket::readyRead, this, &FollowedFullscreenWindows::read);
    connect(&m_events, &QLocalSocket::disconnected, this, [this] {
        m_heard.clear();
        setAreas({});
    });
}

/// A socket that goes says that it has been disconnected.
FollowedFullscreenWindows::~FollowedFullscreenWindows() {
    m_events.disconnect(this);
}

void FollowedFullscreenWindows::follow() {
    if (m_events.state() == QLocalSocket::UnconnectedState) {
        m_events.connectToServer(m_eventsPath);
    }
}

void FollowedFullscreenWindows::read() {
    m_heard += m_events.readAll();
    const auto mayHaveChanged = take(m_heard);
    if (!mayHaveChanged || m_heard.size() > longestEvent) {
        m_events.abort();
    } else if (*mayHaveChanged) {
        refresh();
    }
}

void FollowedFullscreenWindows::refresh() {
    m_isStale = m_isAsking;
    if (m_isAsking) {
        return;
    }
    m_isAsking = true;
    ask([this](const QList<QRect> &areas) {
        m_isAsking = false;
        setAreas(m_events.state() == QLocalSocket::ConnectedState ? areas : QList<QRect>());
        if (m_isStale) {
            refresh();
        }
    });
}

void FollowedFullscreenWindows::setAreas(const QList<QRect> &areas) {
    if (std::exchange(m_areas, areas) != areas) {
        emit changed();
    }
}

} // namespace morvane

#include "moc_FollowedFullscreenWindows.cpp"
