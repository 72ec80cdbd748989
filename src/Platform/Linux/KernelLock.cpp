#include "Platform/Linux/KernelLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace morvane {

namespace {

/// For writing, without which a network's file system gives no lock; and without waiting for what
/// else may have that name.
int openLockFile(const QByteArray &path) {
    constexpr mode_t ownerOnly = 0600;
    return ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY,
                  ownerOnly);
}

/// Somebody else's, such as from a start as the administrator, a link to nowhere or a socket.
bool isInTheWay(int error) {
    return error == EACCES || error == EPERM || error == ENOENT || error == ELOOP || error == ENXIO;
}

} // namespace

KernelLock::~KernelLock() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

KernelLock::Outcome KernelLock::take(const QString &path) {
    if (m_descriptor >= 0) {
        return Outcome::taken;
    }
    const QByteArray name = QFile::encodeName(path);
    int descriptor = openLockFile(name);
    if (descriptor < 0 && isInTheWay(errno)) {
        ::unlink(name.constData());
        descriptor = openLockFile(name);
    }
    if (descriptor < 0) {
        return Outcome::impossible;
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const Outcome outcome = errno == EWOULDBLOCK ? Outcome::heldByAnother : Outcome::impossible;
        ::close(descriptor);
        return outcome;
    }
    m_name = name;
    m_descriptor = descriptor;
    return Outcome::taken;
}

void KernelLock::removeFile() {
    if (m_descriptor >= 0) {
        ::unlink(m_name.constData());
    }
}

} // namespace morvane
