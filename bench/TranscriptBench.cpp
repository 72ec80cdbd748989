#include "Core/Adapters/ClaudeTranscript.h"
#include "Row.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

// What the end of a transcript of 500 MB costs, against reading the same bytes and copying them
// once.

namespace {

using namespace morvane;

constexpr qint64 fileSize = 500'000'000;
constexpr qsizetype tailSize = 262'144;

/// Lines with what a reader looks for.
QByteArray telling() {
    return R"({"type":"permission-mode","permissionMode":"default"}
{"type":"ai-title","aiTitle":"Fix the build"}
{"type":"assistant","message":{"model":"claude-opus-4-1","content":[)"
           R"({"type":"text","text":"All is fixed."}],"usage":{"input_tokens":4,)"
           R"("cache_read_input_tokens":130000}}}
)";
}

/// The results of tools, which are what most of a transcript is made of.
QByteArray filler() {
    const QByteArray line =
        R"({"type":"user","cwd":"/home/ada/project","message":{"role":"user","content":[)"
        R"({"type":"tool_result","tool_use_id":"t","content":")" +
        QByteArray("   12\\tint main() { return \\\"x\\\"; }\\n").repeated(100) + "\"}]}}\n";
    return line.repeated((tailSize - telling().size()) / line.size());
}

QString makeTranscript(const QTemporaryDir &folder, const char *name, const QByteArray &end) {
    QFile file(folder.filePath(QLatin1String(name)));
    file.open(QIODevice::WriteOnly);
    file.resize(fileSize - end.size() - 1);
    file.seek(file.size());
    file.write("\n" + end);
    return file.fileName();
}

void readAndCopy(const QString &path) {
    static std::vector<char> buffer(tailSize);
    static std::vector<char> copy(tailSize);
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const ssize_t count = ::pread(file, buffer.data(), tailSize, fileSize - off_t(tailSize));
    std::memcpy(copy.data(), buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    ::close(file);
}

void measure(const char *what, const QString &path) {
    const auto read = [&] {
        return secondsOf([&] { TranscriptReader::readTail(path, ClaudeTranscript::takeLine); });
    };
    const Effort effort{.turns = 20};
    compare({what, "the same bytes read and copied"}, effort, read,
            [&] { return secondsOf([&] { readAndCopy(path); }); });
    compare({what, "5 ms", 1}, effort, read, [] { return 0.005; });
}

} // namespace

int main() {
    const QTemporaryDir folder;
    measure("a transcript's tail, told by its last lines",
            makeTranscript(folder, "near", filler() + telling()));
    measure("a transcript's tail, told by its first lines",
            makeTranscript(folder, "far", telling() + filler()));
    measure("a transcript's tail of the shortest lines, which tell nothing",
            makeTranscript(folder, "short", QByteArray("{}\n").repeated(tailSize / 3)));
    const QByteArray line = "{\"type\":\"error\"}\n";
    measure("a transcript's tail of the shortest lines that might tell something",
            makeTranscript(folder, "parsed", line.repeated(tailSize / line.size())));
    measure("a transcript's tail of one line, which is cut",
            makeTranscript(folder, "long", QByteArray(2 * tailSize, 'x')));
}
