#include "Core/Ground/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace morvane {

namespace {

Failure because(int error) {
    return {QString::fromStdString(std::generic_category().message(error))};
}

/// The rename itself reaches the disk with its folder. Not every file system can do that, and the
/// file is whole either way.
void syncFolder(const QString &path) {
    const int folder = ::open(QFile::encodeName(QFileInfo(path).path()).constData(),
                              O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
}

} // namespace

Failure cannotWrite(const QString &path, const Failure &why) {
    return {WholeFile::tr("%1 could not be written: %2").arg(path, why.message)};
}

/// 0, or the error. Not everyone may give a file away, so it is only tried where it is needed.
int WholeFile::applyOwner() const {
    struct stat own {};
    if (::fstat(m_file.handle(), &own) != 0) {
        return errno;
    }
    const bool isSame = own.st_uid == m_owner->user && own.st_gid == m_owner->group;
    return isSame || ::fchown(m_file.handle(), m_owner->user, m_owner->group) == 0 ? 0 : errno;
}

/// The library's own commit overlooks a failure to write what it has buffered, and one to sync.
std::optional<Failure> WholeFile::fill(const QByteArray &content) {
    if (!m_file.open(QIODevice::WriteOnly)) {
        return Failure{m_file.errorString()};
    }
    if (const int error = m_owner ? applyOwner() : 0) {
        return Failure{tr("its owner can't be kept: %1").arg(because(error).message)};
    }
    if (m_mode && ::fchmod(m_file.handle(), *m_mode) != 0) {
        return because(errno);
    }
    if (m_file.write(content) != content.size() || !m_file.flush()) {
        return Failure{m_file.errorString()};
    }
    return ::fsync(m_file.handle()) == 0 ? std::nullopt : std::optional(because(errno));
}

std::optional<Failure> WholeFile::commit() {
    if (!m_file.commit()) {
        return Failure{m_file.errorString()};
    }
    syncFolder(m_file.fileName());
    return std::nullopt;
}

std::optional<Failure> WholeFile::write(const QByteArray &content) {
    const auto failure = fill(content);
    return failure ? failure : commit();
}

} // namespace morvane
