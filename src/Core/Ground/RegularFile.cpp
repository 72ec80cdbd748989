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
        m_isRegular = m_file.number() >= 0 && ::fstat(m_file.number(), &m_status) == 0 &&
                      S_ISREG(m_status.st_mode);
    }

    bool isRegular() const { return m_isRegular; }
    qsizetype size() const { return m_status.st_size; }

    std::optional<QByteArray> read(qsizetype offset, qsizetype limit) const {
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
                return std::nullopt;
            }
        }
        result.truncate(filled);
        return result;
    }

private:
    Descriptor m_file;
    struct stat m_status {};
    bool m_isRegular = false;
};

} // namespace

std::optional<QByteArray> whole(const QString &path) {
    const OpenFile file(path);
    if (file.isRegular() && file.size() > longestWhole) {
        errno = EFBIG;
        return std::nullopt;
    }
    return file.isRegular() ? file.read(0, file.size()) : std::nullopt;
}

std::optional<QByteArray> head(const QString &path, qsizetype limit) {
    const OpenFile file(path);
    return file.isRegular() ? file.read(0, limit) : std::nullopt;
}

std::optional<QByteArray> tail(const QString &path, qsizetype limit) {
    const OpenFile file(path);
    if (!file.isRegular()) {
        return std::nullopt;
    }
    const qsizetype length = std::min(file.size(), limit);
    return file.read(file.size() - length, length);
}

} // namespace morvane::RegularFile
