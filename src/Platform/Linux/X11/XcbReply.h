#pragma once

#include <cstdlib>
#include <memory>

namespace morvane {

struct XcbFree {
    void operator()(void *memory) const { std::free(memory); }
};

/// A reply, an event or an error of the X server, which the client has to free.
template <typename Type>
using XcbReply = std::unique_ptr<Type, XcbFree>;

} // namespace morvane
