#include "Platform/Linux/Wayland/CompositorSocket.h"

#include "Platform/Linux/UnixSockets.h"
#include "Platform/Scheduler.h"

#include <cerrno>
#include <sys/socket.h>
#include <utility>

namespace morvane {

namespace {

constexpr qsizetype readAtOnce = 65536;
constexpr Seconds reconnectDelay(0.05);

} // namespace

void CompositorSocket::open(const QString &path) {
    close();
    m_path = path;
    tryToOpen();
}

void CompositorSocket::tryToOpen() {
    auto [socket, error] = UnixSockets::connectTo(m_path);
    if (error == 0) {
        m_socket = std::move(socket);
        m_notifier = std::make_unique<QSocketNotifier>(m_socket->number(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &CompositorSocket::read);
        emit opened();
    } else if (error == EAGAIN) {
        m_retry = m_scheduler.after(reconnectDelay, [this] { tryToOpen(); });
    } else {
        emit refused();
    }
}

bool CompositorSocket::send(const QByteArray &bytes) const {
    return isOpen() && ::send(m_socket->number(), bytes.constData(),
                              static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

/// Deletes the notifier later, since it may be the one that is just activating.
void CompositorSocket::close() {
    m_retry.cancel();
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
    }
    m_socket.reset();
}

void CompositorSocket::read() {
    QByteArray bytes(readAtOnce, Qt::Uninitialized);
    const auto count = ::recv(m_socket->number(), bytes.data(), readAtOnce, 0);
    if (count > 0) {
        bytes.truncate(count);
        emit received(bytes);
    } else if (count == 0 || errno != EAGAIN) {
        close();
        emit closed();
    }
}

} // namespace morvane

#include "moc_CompositorSocket.cpp"
