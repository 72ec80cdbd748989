#include "Core/Ground/WholeFile.h"

#include "Core/Ground/FileAttributes.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvane {

namespace {

/// The rename reaches the disk when its folder is synced. Failure is ignored: not every file system
/// can do that, and the file is whole either way.
void syncFolder(const QString &path) {
    const Descriptor folder(::open(QFile::encodeName(QFileInfo(path).path()).constData(),
                                   O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ::fsync(folder.number());
}

Result<void> writeAll(int file, const QByteArray &content) {
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t length = ::write(file, content.constData() + written,
                                       static_cast<std::size_t>(content.size() - written));
        if (length < 0 && errno != EINTR) {
            return systemFailure(errno);
        }
        written += std::max<qsizetype>(length, 0);
    }
    return ::fsync(file) == 0 ? Result<void>() : systemFailure(errno);
}

} // namespace

Failure cannotWrite(const QString &path, const Failure &why) {
    return {WholeFile::tr("%1 could not be written: %2").arg(path, why.message)};
}

WholeFile::~WholeFile() {
    if (m_file.number() >= 0) {
        ::unlink(m_temporary.constData());
    }
}

Result<void> WholeFile::open() {
    // Whoever the final mode shuts out must not be able to read the file even for a moment.
    const mode_t mode = m_mode || m_model ? 0600 : 0666;
    do {
        m_temporary = QFile::encodeName(m_path) + '.' +
                      QByteArray::number(QRandomGenerator::global()->generate(), 36);
        m_file = Descriptor(
            ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    } while (m_file.number() < 0 && errno == EEXIST);
    return m_file.number() >= 0 ? Result<void>() : systemFailure(errno);
}

/// Not everyone may change a file's owner, so that is only tried where it is needed. A group that
/// isn't ours, such as one left by a container, is replaced by our own, which gets no more rights
/// than everybody had. The permission bits come last: they also bound what an access list grants.
Result<void> WholeFile::resemble(const QByteArray &model) const {
    struct stat own {};
    struct stat other {};
    if (::fstat(m_file.number(), &own) != 0 || ::stat(model.constData(), &other) != 0) {
        return systemFailure(errno);
    }
    const bool isSame = own.st_uid == other.st_uid && own.st_gid == other.st_gid;
    mode_t mode = other.st_mode & 07777;
    if (!isSame && ::fchown(m_file.number(), other.st_uid, other.st_gid) != 0) {
        if (own.st_uid != other.st_uid) {
            return Failure{tr("its owner can't be kept: %1").arg(systemFailure(errno).message)};
        }
        const mode_t others = mode & S_IRWXO;
        mode &= ~mode_t{S_ISGID | S_IRWXG} | (others << 3U);
    }
    if (const auto copied = FileAttributes::copy(model, m_file.number()); !copied) {
        return Failure{tr("its attributes can't be kept: %1").arg(copied.error().message)};
    }
    return ::fchmod(m_file.number(), mode) == 0 ? Result<void>() : systemFailure(errno);
}

Result<void> WholeFile::fill(const QByteArray &content) {
    if (const auto opened = open(); !opened) {
        return opened;
    }
    if (m_model) {
        if (const auto resembling = resemble(QFile::encodeName(*m_model)); !resembling) {
            return resembling;
        }
    }
    if (m_mode && ::fchmod(m_file.number(), *m_mode) != 0) {
        return systemFailure(errno);
    }
    return writeAll(m_file.number(), content);
}

Result<void> WholeFile::commit() {
    // Closed before the rename: a file that is open for writing can't be executed, and this may be
    // a script that an agent is just about to run.
    m_file = Descriptor();
    if (::rename(m_temporary.constData(), QFile::encodeName(m_path).constData()) != 0) {
        const int error = errno;
        ::unlink(m_temporary.constData());
        return systemFailure(error);
    }
    syncFolder(m_path);
    return {};
}

Result<void> WholeFile::write(const QByteArray &content) {
    const auto filled = fill(content);
    return filled ? commit() : filled;
}

} // namespace morvane
