#include "Core/Settings/DefaultsFormat.h"

#include <cstdint>
#include <cstdlib>

// What could be read must come back the same after it was written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto values = DefaultsFormat::parse(text)) {
        if (DefaultsFormat::parse(DefaultsFormat::write(*values)) != values) {
            std::abort();
        }
    }
    return 0;
}
