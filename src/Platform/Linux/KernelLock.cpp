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

/// Opens for writing, without which network file systems give no lock, and without blocking on
/// whatever else may have that name.
Descriptor openLockFile(const QByteArray &path) {
    constexpr mode_t ownerOnly = 0600;
    return Descriptor(
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, ownerOnly));
}

/// True for a file of another user, as after a start as the administrator, a dangling link or a
/// socket.
bool isReplaceable(int error) {
    return error == EACCES || error == EPERM || error == ENOENT || error == ELOOP || error == ENXIO;
}

QByteArray contentOf(int descriptor) {
    std::array<char, 64> text{};
    const ssize_t size = ::pread(descriptor, text.data(), text.size(), 0);
    return {text.data(), std::max<ssize_t>(size, 0)};
}

/// Writes this boot's id into the file; even a copy of this machine has another one. Truncates
/// first, so that a failed write doesn't leave another machine's id, and syncs, since network file
/// systems may otherwise show it to other machines late. Written once per boot.
void signLock(int descriptor) {
    const QByteArray id = QSysInfo::bootUniqueId();
    if (contentOf(descriptor) != id && ::ftruncate(descriptor, 0) == 0) {
        std::ignore = ::pwrite(descriptor, id.constData(), static_cast<size_t>(id.size()), 0);
        std::ignore = ::fdatasync(descriptor);
    }
}

/// An unsigned lock is taken for this machine's.
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
    if (file.number() < 0 && isReplaceable(errno)) {
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
