#include "Platform/Linux/Wayland/SwayFullscreenWindows.h"

#include "Platform/Linux/Wayland/SocketQuestion.h"
#include "Platform/Linux/Wayland/SwayMessage.h"

#include <utility>

namespace morvane {

namespace {

constexpr qsizetype longestMessage = 1048576;
constexpr qint64 readAtOnce = 65536;

} // namespace

SwayFullscreenWindows::SwayFullscreenWindows(QString socket) : m_socket(std::move(socket)) {
    m_events.setReadBufferSize(readAtOnce);
    // Those that sway 1.7 knows; it refuses all where one is unknown.
    connect(&m_events, &QLocalSocket::connected, this, [this] {
        m_events.write(
            SwayMessage::encode(SwayMessage::Type::subscribe, R"(["window","workspace"])"));
    });
    connect(&m_events, &QLocalSocket::readyRead, this, &SwayFullscreenWindows::read);
    connect(&m_events, &QLocalSocket::disconnected, this, [this] {
        m_heard.clear();
        setAreas({});
    });
}

/// A socket that goes says that it has been disconnected.
SwayFullscreenWindows::~SwayFullscreenWindows() {
    m_events.disconnect(this);
}

void SwayFullscreenWindows::follow() {
    if (m_events.state() == QLocalSocket::UnconnectedState) {
        m_events.connectToServer(m_socket);
    }
}

void SwayFullscreenWindows::read() {
    m_heard += m_events.readAll();
    auto length = SwayMessage::length(m_heard);
    while (length && *length > 0 && *length <= m_heard.size()) {
        const QByteArray message = m_heard.left(*length);
        m_heard.remove(0, *length);
        hear(message);
        length = SwayMessage::length(m_heard);
    }
    if (length && (*length == 0 || *length > longestMessage)) {
        m_events.abort();
    }
}

void SwayFullscreenWindows::hear(const QByteArray &message) {
    if (SwayMessage::isRefusal(message)) {
        m_events.abort();
    } else if (!SwayMessage::isOfTitle(message)) {
        refresh();
    }
}

void SwayFullscreenWindows::refresh() {
    m_isStale = m_isAsking;
    if (m_isAsking) {
        return;
    }
    m_isAsking = true;
    SocketQuestion::ask(
        m_socket, SwayMessage::encode(SwayMessage::Type::getTree), &SwayMessage::length,
        [this](const std::optional<QByteArray> &answer) {
            m_isAsking = false;
            const bool isTold = answer && m_events.state() == QLocalSocket::ConnectedState;
            setAreas(isTold ? SwayMessage::fullscreenAreas(*answer) : QList<QRect>());
            if (m_isStale) {
                refresh();
            }
        },
        this);
}

void SwayFullscreenWindows::setAreas(const QList<QRect> &areas) {
    if (std::exchange(m_areas, areas) != areas) {
        emit changed();
    }
}

} // namespace morvane

#include "moc_SwayFullscreenWindows.cpp"
