#include "Platform/Linux/Wayland/CompositorSocket.h"

#include "Platform/Linux/UnixSockets.h"

#include <cerrno>
#include <sys/socket.h>

namespace morvane {

namespace {

constexpr qsizetype readAtOnce = 65536;

} // namespace

bool CompositorSocket::open(const QString &path) {
    close();
    m_socket.emplace(UnixSockets::connectTo(path));
    if (m_socket->number() < 0) {
        return false;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket->number(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &CompositorSocket::read);
    return true;
}

bool CompositorSocket::send(const QByteArray &bytes) const {
    return isOpen() && ::send(m_socket->number(), bytes.constData(),
                              static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

/// The notifier may be the one that has just told.
void CompositorSocket::close() {
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
