#include "Core/Intake/HttpRequestParser.h"

#include <cstdint>
#include <cstdlib>
#include <string>

// A request must be parsed the same way whether it comes in one piece or byte by byte, and the body
// of an unauthorised one must not be kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace morvane;
    using Status = HttpRequestParser::Status;
    const std::string text(reinterpret_cast<const char *>(data), size);
    HttpRequestParser whole("T");
    const Status expected = whole.take(text);
    HttpRequestParser piecewise("T");
    Status status = Status::unfinished;
    for (std::size_t at = 0; at < size && status == Status::unfinished; ++at) {
        status = piecewise.take(std::string_view(text).substr(at, 1));
    }
    const HttpRequest &request = whole.request();
    if (status != expected ||
        (status == Status::complete && (piecewise.request().headers != request.headers ||
                                        piecewise.request().isAuthorised != request.isAuthorised ||
                                        piecewise.request().body != request.body))) {
        std::abort();
    }
    if (!request.isAuthorised && !request.body.empty()) {
        std::abort();
    }
    return 0;
}
