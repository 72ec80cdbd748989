#include "Core/Adapters/ClaudeTranscript.h"
#include "Core/Adapters/CodexTranscript.h"

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

// Whatever a transcript holds, it is read to the end, and the partial line that a tail may begin
// with changes nothing. No text is longer than a line on screen.
namespace {

using namespace morvane;

bool fits(const std::optional<QString> &line) {
    return line == TranscriptReader::displayLine(line) || line->endsWith(QChar(0x2026));
}

void check(TranscriptReader::TakeLine takeLine, const QByteArray &lines) {
    using TranscriptReader::newestFirst;
    const TranscriptInfo info = newestFirst(lines, takeLine);
    if (newestFirst("piece\"}}\n" + lines, takeLine) != info || !fits(info.title) ||
        !fits(info.lastAssistantText)) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray lines(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    check(ClaudeTranscript::takeLine, lines);
    check(CodexTranscript::takeLine, lines);
    return 0;
}
