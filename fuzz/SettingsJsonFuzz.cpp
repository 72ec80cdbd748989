#include "Core/SettingsJson.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdlib>

// What has been read can be written, and is read as the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    const auto root = SettingsJson::parse({data, static_cast<qsizetype>(size)});
    if (root && SettingsJson::parse(SettingsJson::write(*root)) != root) {
        std::abort();
    }
    return 0;
}
