#include "Core/Adapters/ClaudeTranscript.h"

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

// What the end of a transcript of 500 MB costs, against reading the same bytes and copying them
// once. Both take turns, and the median of each counts.

namespace {

using namespace morvane;

constexpr qint64 fileSize = 500'000'000;
constexpr std::size_t tailSize = 262'144;
constexpr int rounds = 301;

/// What a reader looks for.
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
    return line.repeated((qsizetype(tailSize) - telling().size()) / line.size());
}

QString makeTranscript(const QTemporaryDir &folder, const char *name, const QByteArray &end) {
    QFile file(folder.filePath(QLatin1String(name)));
    file.open(QIODevice::WriteOnly);
    file.resize(fileSize - end.size() - 1);
    file.seek(file.size());
    file.write("\n" + end);
    return file.fileName();
}

double seconds(auto action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void readAndCopy(const QString &path) {
    static std::vector<char> buffer(tailSize);
    static std::vector<char> copy(tailSize);
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const ssize_t count = ::pread(file, buffer.data(), tailSize, fileSize - off_t(tailSize));
    std::memcpy(copy.data(), buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    benchmark::DoNotOptimize(copy.data());
    ::close(file);
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + rounds / 2);
    return values[rounds / 2];
}

void measure(const char *what, const QString &path) {
    std::vector<double> reads;
    std::vector<double> copies;
    for (int round = 0; round < rounds; ++round) {
        copies.push_back(seconds([&] { readAndCopy(path); }));
        reads.push_back(seconds([&] {
            benchmark::DoNotOptimize(TranscriptReader::readTail(path, ClaudeTranscript::takeLine));
        }));
    }
    constexpr double limit = 0.005;
    std::printf("a tail, %s / the same bytes read and copied: %.2f\n", what,
                median(reads) / median(copies));
    std::printf("a tail, %s / its limit of 5 ms: %.3f\n", what, median(reads) / limit);
}

} // namespace

int main() {
    const QTemporaryDir folder;
    measure("told by its last lines", makeTranscript(folder, "near.jsonl", filler() + telling()));
    measure("told by its first lines", makeTranscript(folder, "far.jsonl", telling() + filler()));
}
