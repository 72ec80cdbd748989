#include "Core/Hooks/LenientJson.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdlib>

// What has been read can be written, and is read as the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    const auto root = LenientJson::parse({data, static_cast<qsizetype>(size)});
    if (root && LenientJson::parse(LenientJson::write(*root)) != root) {
        std::abort();
    }
    return 0;
}
