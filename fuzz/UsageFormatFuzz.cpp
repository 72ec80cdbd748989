#include "Core/Usage/CodexExchange.h"
#include "Core/Usage/UsageFormat.h"

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

// Whatever the endpoint, a status line or Codex says, a utilization lies between 0 and 1. Codex's
// output means the same in whatever pieces it comes.
namespace {

using namespace morvane;

void check(const std::optional<UsageWindow> &window) {
    if (window && !(window->utilization >= 0 && window->utilization <= 1)) {
        std::abort();
    }
}

void check(const std::optional<Usage> &usage) {
    if (usage) {
        check(usage->session);
        check(usage->weekly);
        check(usage->fable);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    check(UsageFormat::parse(bytes, Date{}));
    check(UsageFormat::parseLive(bytes, Date{}));

    CodexExchange whole;
    whole.consume(bytes);
    CodexExchange cut;
    for (const char byte : bytes) {
        cut.consume(QByteArray(1, byte));
    }
    if (whole.response() != cut.response()) {
        std::abort();
    }
    if (const auto &line = whole.response()) {
        if (const auto usage = UsageFormat::parseCodex(*line, Date{})) {
            check(usage->primary);
            check(usage->secondary);
        }
    }
    return 0;
}
