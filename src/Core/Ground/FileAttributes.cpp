#include "Core/Ground/FileAttributes.h"

#include <QByteArrayList>

#include <cerrno>
#include <sys/xattr.h>

namespace morvane::FileAttributes {

namespace {

/// What a call has yielded, or its error.
struct Answer {
    QByteArray bytes;
    int error = 0;
};

/// Asks for the size first and then for that many bytes; repeats this while the value has grown in
/// between.
template <typename Call>
Answer sized(const Call &call) {
    for (;;) {
        const ssize_t size = call(nullptr, 0);
        if (size <= 0) {
            return {{}, size < 0 ? errno : 0};
        }
        QByteArray bytes(static_cast<qsizetype>(size), '\0');
        const ssize_t length = call(bytes.data(), static_cast<std::size_t>(size));
        if (length >= 0) {
            bytes.truncate(static_cast<qsizetype>(length));
            return {bytes, 0};
        }
        if (const int error = errno; error != ERANGE) {
            return {{}, error};
        }
    }
}

constexpr char accessList[] = "system.posix_acl_access";

} // namespace

Result<void> copy(const QByteArray &from, int to) {
    // An access list inherited from the folder could admit users whom the original file doesn't.
    ::fremovexattr(to, accessList);
    const Answer names = sized([&](char *buffer, std::size_t size) {
        return ::listxattr(from.constData(), buffer, size);
    });
    if (names.error != 0) {
        return names.error == ENOTSUP ? Result<void>() : systemFailure(names.error);
    }
    for (const QByteArray &name : names.bytes.split('\0')) {
        const bool isMissed = name.startsWith("user.") || name.startsWith("system.");
        if (!isMissed && name != "security.selinux") {
            continue;
        }
        auto [value, error] = sized([&](char *buffer, std::size_t size) {
            return ::getxattr(from.constData(), name.constData(), buffer, size);
        });
        if (error == 0 && ::fsetxattr(to, name.constData(), value.constData(),
                                      static_cast<std::size_t>(value.size()), 0) != 0) {
            error = errno;
        }
        if (error != 0 && isMissed) {
            return systemFailure(error);
        }
    }
    return {};
}

} // namespace morvane::FileAttributes
