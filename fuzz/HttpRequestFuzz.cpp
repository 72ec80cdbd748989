#include "Core/Intake/HttpRequestParser.h"

#include <cstdint>
#include <cstdlib>

// A request must be found the same way whether it comes in one piece or byte by byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using morvane::HttpRequestParser;
    const std::string text(reinterpret_cast<const char *>(data), size);
    HttpRequestParser whole;
    const auto expected = whole.parse(text);
    HttpRequestParser piecewise;
    std::string buffer;
    auto status = HttpRequestParser::Status::unfinished;
    for (const char byte : text) {
        buffer.push_back(byte);
        status = piecewise.parse(buffer);
        if (status != HttpRequestParser::Status::unfinished) {
            break;
        }
    }
    if (size > 0 && status != expected) {
        std::abort();
    }
    if (status == HttpRequestParser::Status::complete &&
        piecewise.request().body != whole.request().body) {
        std::abort();
    }
    return 0;
}
