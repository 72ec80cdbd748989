#include "Platform/Linux/UnixSockets.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace morvane::UnixSockets {

namespace {

constexpr int mostWaiting = 16;

/// Makes a socket and does that to it with the path.
template <typename Use>
Descriptor socketFor(const QString &path, Use use) {
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return Descriptor(-1);
    }
    std::ranges::copy(name, address.sun_path);
    Descriptor result(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (result.number() < 0 ||
        use(result.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        return Descriptor(-1);
    }
    return result;
}

} // namespace

Descriptor connectTo(const QString &path) {
    return socketFor(path, ::connect);
}

Descriptor listenAt(const QString &path) {
    return socketFor(path, [](int number, const sockaddr *address, socklen_t size) {
        // The file that gets the name has the rights of the socket.
        if (::fchmod(number, S_IRUSR | S_IWUSR) != 0) {
            return -1;
        }
        ::unlink(reinterpret_cast<const sockaddr_un *>(address)->sun_path);
        return ::bind(number, address, size) == 0 ? ::listen(number, mostWaiting) : -1;
    });
}

} // namespace morvane::UnixSockets
