#include "Core/Ground/FileAttributes.h"

#include <QByteArrayList>

#include <cerrno>
#include <sys/xattr.h>

namespace morvane::FileAttributes {

namespace {

/// What a call yields that is asked first for a size and then for so many bytes; as long as what
/// it is asked for grows in between, again. Empty after a failure, which `errno` tells.
template <typename Call>
QByteArray sized(const Call &call) {
    for (;;) {
        errno = 0;
        const ssize_t size = call(nullptr, 0);
        if (size <= 0) {
            return {};
        }
        QByteArray bytes(static_cast<qsizetype>(size), '\0');
        const ssize_t length = call(bytes.data(), static_cast<std::size_t>(size));
        if (length >= 0) {
            bytes.truncate(static_cast<qsizetype>(length));
            return bytes;
        }
        if (errno != ERANGE) {
            return {};
        }
    }
}

constexpr char accessList[] = "system.posix_acl_access";

} // namespace

int copy(const QByteArray &from, int to) {
    // One that the folder hands down would let in whom the file has never known.
    ::fremovexattr(to, accessList);
    const QByteArray names = sized([&](char *buffer, std::size_t size) {
        return ::listxattr(from.constData(), buffer, size);
    });
    if (errno != 0) {
        return errno == ENOTSUP ? 0 : errno;
    }
    for (const QByteArray &name : names.split('\0')) {
        const bool isMissed = name.startsWith("user.") || name.startsWith("system.");
        if (!isMissed && name != "security.selinux") {
            continue;
        }
        const QByteArray value = sized([&](char *buffer, std::size_t size) {
            return ::getxattr(from.constData(), name.constData(), buffer, size);
        });
        const bool isCopied =
            errno == 0 && ::fsetxattr(to, name.constData(), value.constData(),
                                      static_cast<std::size_t>(value.size()), 0) == 0;
        if (!isCopied && isMissed) {
            return errno;
        }
    }
    return 0;
}

} // namespace morvane::FileAttributes
