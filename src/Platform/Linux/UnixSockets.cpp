#include "Platform/Linux/UnixSockets.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <utility>

namespace morvane::UnixSockets {

namespace {

constexpr int mostWaiting = 16;

/// Makes a socket and applies `use` to it and the path's address.
template <typename Use>
Socket socketFor(const QString &path, Use use) {
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
        return {Descriptor(), ENAMETOOLONG};
    }
    std::ranges::copy(name, address.sun_path);
    Descriptor result(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (result.number() < 0 ||
        use(result.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        return {Descriptor(), errno};
    }
    return {std::move(result), 0};
}

} // namespace

Socket connectTo(const QString &path) {
    return socketFor(path, ::connect);
}

Socket listenAt(const QString &path) {
    return socketFor(path, [](int number, const sockaddr *address, socklen_t size) {
        // The file that `bind` makes gets the mode of the socket.
        if (::fchmod(number, S_IRUSR | S_IWUSR) != 0) {
            return -1;
        }
        ::unlink(reinterpret_cast<const sockaddr_un *>(address)->sun_path);
        return ::bind(number, address, size) == 0 ? ::listen(number, mostWaiting) : -1;
    });
}

} // namespace morvane::UnixSockets
