#include "Platform/Linux/KernelLock.h"

#include <QFile>
#include <QSysInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace morvane {

namespace {

/// For writing, without which a network's file system gives no lock; and without waiting for what
/// else may have that name.
Descriptor openLockFile(const QByteArray &path) {
    constexpr mode_t ownerOnly = 0600;
    return Descriptor(
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, ownerOnly));
}

/// Somebody else's, such as from a start as the administrator, a link to nowhere or a socket.
bool isInTheWay(int error) {
    return error == EACCES || error == EPERM || error == ENOENT || error == ELOOP || error == ENXIO;
}

QByteArray contentOf(int descriptor) {
    std::array<char, 64> text{};
    const ssize_t size = ::pread(descriptor, text.data(), text.size(), 0);
    return {text.data(), std::max<ssize_t>(size, 0)};
}

/// Since each start of the system has an id of its own, which no copy of a machine shares. What
/// can't be written down must not be another one's; what is must be seen from other machines, from
/// which a network's file system may keep it for a while. Written once for each start.
void signLock(int descriptor) {
    const QByteArray id = QSysInfo::bootUniqueId();
    if (contentOf(descriptor) != id && ::ftruncate(descriptor, 0) == 0) {
        std::ignore = ::pwrite(descriptor, id.constData(), static_cast<size_t>(id.size()), 0);
        std::ignore = ::fdatasync(descriptor);
    }
}

/// One that isn't signed is taken for this machine's.
bool isSignedElsewhere(int descriptor) {
    const QByteArray id = contentOf(descriptor);
    return !id.isEmpty() && id != QSysInfo::bootUniqueId();
}

} // namespace

KernelLock::Outcome KernelLock::take(const QString &path) {
    if (m_descriptor.number() >= 0) {
        return Outcome::taken;
    }
    const QByteArray name = QFile::encodeName(path);
    Descriptor file = openLockFile(name);
    if (file.number() < 0 && isInTheWay(errno)) {
        ::unlink(name.constData());
        file = openLockFile(name);
    }
    if (file.number() < 0) {
        return Outcome::impossible;
    }
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) {
            return Outcome::impossible;
        }
        return isSignedElsewhere(file.number()) ? Outcome::heldElsewhere : Outcome::heldByAnother;
    }
    signLock(file.number());
    m_name = name;
    m_descriptor = std::move(file);
    return Outcome::taken;
}

void KernelLock::removeFile() {
    if (m_descriptor.number() >= 0) {
        ::unlink(m_name.constData());
    }
}

} // namespace morvane
