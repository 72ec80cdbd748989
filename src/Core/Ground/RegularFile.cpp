#include "Core/Ground/RegularFile.h"

#include "Platform/Descriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvane::RegularFile {

namespace {

/// Far more than anybody's settings hold; a sparse file may claim a terabyte.
constexpr qsizetype longestWhole = 33'554'432;

/// A regular file that is open, or none.
class OpenFile {
public:
    /// Non-blocking, since a pipe without a writer would hold up the opening itself.
    explicit OpenFile(const QString &path)
        : m_file(::open(QFile::encodeName(path).constData(),
                        O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
        struct stat status {};
        if (m_file.number() < 0 || ::fstat(m_file.number(), &status) != 0) {
            m_error = errno;
        } else if (!S_ISREG(status.st_mode)) {
            m_error = EINVAL;
        } else {
            m_size = status.st_size;
        }
    }

    /// Why there is none, or why the last `read` failed; else 0.
    int error() const { return m_error; }
    qsizetype size() const { return m_size; }

    /// None where there is an error.
    std::optional<QByteArray> read(qsizetype offset, qsizetype limit) {
        if (m_error != 0) {
            return std::nullopt;
        }
        QByteArray result(limit, Qt::Uninitialized);
        qsizetype filled = 0;
        while (filled < limit) {
            const ssize_t count =
                ::pread(m_file.number(), result.data() + filled,
                        static_cast<std::size_t>(limit - filled), offset + filled);
            if (count == 0) {
                break;
            }
            if (count > 0) {
                filled += count;
            } else if (errno != EINTR) {
                m_error = errno;
                return std::nullopt;
            }
        }
        result.truncate(filled);
        return result;
    }

private:
    Descriptor m_file;
    qsizetype m_size = 0;
    int m_error = 0;
};

} // namespace

Result<QByteArray> whole(const QString &path) {
    OpenFile file(path);
    if (file.size() > longestWhole) {
        return systemFailure(EFBIG);
    }
    const auto content = file.read(0, file.size());
    return content ? Result<QByteArray>(*content) : systemFailure(file.error());
}

std::optional<QByteArray> head(const QString &path, qsizetype limit) {
    return OpenFile(path).read(0, limit);
}

std::optional<QByteArray> tail(const QString &path, qsizetype limit) {
    OpenFile file(path);
    const qsizetype length = std::min(file.size(), limit);
    return file.read(file.size() - length, length);
}

} // namespace morvane::RegularFile
