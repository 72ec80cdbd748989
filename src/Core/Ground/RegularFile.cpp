#include "Core/Ground/RegularFile.h"

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

/// An open regular file, or nothing.
class Descriptor {
public:
    /// Non-blocking, since a pipe without a writer would hold up the opening itself.
    explicit Descriptor(const QString &path)
        : m_value(::open(QFile::encodeName(path).constData(),
                         O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
        m_isRegular = m_value >= 0 && ::fstat(m_value, &m_status) == 0 && S_ISREG(m_status.st_mode);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (m_value >= 0) {
            ::close(m_value);
        }
    }

    bool isRegular() const { return m_isRegular; }
    qsizetype size() const { return m_status.st_size; }

    std::optional<QByteArray> read(qsizetype offset, qsizetype limit) const {
        QByteArray result(limit, Qt::Uninitialized);
        qsizetype filled = 0;
        while (filled < limit) {
            const ssize_t count =
                ::pread(m_value, result.data() + filled, static_cast<std::size_t>(limit - filled),
                        offset + filled);
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
    int m_value;
    struct stat m_status {};
    bool m_isRegular = false;
};

} // namespace

std::optional<QByteArray> whole(const QString &path) {
    const Descriptor file(path);
    if (file.isRegular() && file.size() > longestWhole) {
        errno = EFBIG;
        return std::nullopt;
    }
    return file.isRegular() ? file.read(0, file.size()) : std::nullopt;
}

std::optional<QByteArray> head(const QString &path, qsizetype limit) {
    const Descriptor file(path);
    return file.isRegular() ? file.read(0, limit) : std::nullopt;
}

std::optional<QByteArray> tail(const QString &path, qsizetype limit) {
    const Descriptor file(path);
    if (!file.isRegular()) {
        return std::nullopt;
    }
    const qsizetype length = std::min(file.size(), limit);
    return file.read(file.size() - length, length);
}

} // namespace morvane::RegularFile
