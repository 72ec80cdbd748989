#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace morvane {

/// The headers of a request that the event server reads. All others are passed over.
enum class HttpHeader {
    contentLength,
    token,
    agent,
    decision,
    hookEvent,
    itermSession,
    termProgram,
    hostBundle,
    tty,
    tmuxPane,
    tmuxServer,
    weztermPane,
    kittyWindow,
    zellijSession,
    orcaTerminal,
    process,
    program,
    kittyListenOn,
    weztermSocket,
    count, ///< how many there are
};

inline constexpr auto httpHeaderCount = static_cast<std::size_t>(HttpHeader::count);

/// The header of this name in any case, or none for one that isn't read.
std::optional<HttpHeader> httpHeader(std::string_view name);

} // namespace morvane
