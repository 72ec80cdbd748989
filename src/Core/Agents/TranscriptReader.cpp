#include "Core/Agents/TranscriptReader.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Ground/JsonObject.h"
#include "Core/Ground/RegularFile.h"

#include <algorithm>
#include <string_view>

namespace morvane::TranscriptReader {

namespace {

constexpr qsizetype headSize = 65'536;
constexpr int maxCharacters = 120;

/// Of all the lines that tell something, of any agent, this one of Gemini CLI is the shortest. A
/// tail may hold so many shorter ones that it would take too long to parse each of them.
constexpr qsizetype shortestLine = std::string_view(R"({"type":"error"})").size();

/// The end of the file. Where that begins within a character, the rest of the character is left
/// out: it belongs to a cut line, and would make the whole text invalid UTF-8.
QByteArray tailOf(const QString &path, qsizetype size) {
    constexpr qsizetype longestRest = 3;
    QByteArray tail = RegularFile::tail(path, size).value_or(QByteArray());
    if (tail.size() == size) {
        const auto isRest = [](char byte) { return (byte & 0xC0) == 0x80; };
        const auto begin = std::find_if_not(tail.cbegin(), tail.cbegin() + longestRest, isRest);
        tail.remove(0, begin - tail.cbegin());
    }
    return tail;
}

bool isUtf8(QByteArrayView text) {
    return simdjson::validate_utf8(text.data(), static_cast<std::size_t>(text.size()));
}

} // namespace

TranscriptInfo newestFirst(QByteArrayView lines, TakeLine takeLine) {
    TranscriptInfo info;
    if (!isUtf8(lines)) {
        return info;
    }
    while (!lines.isEmpty() && !info.isComplete()) {
        const qsizetype lineFeed = lines.lastIndexOf('\n');
        const QByteArrayView line = lines.sliced(lineFeed + 1);
        lines.truncate(std::max<qsizetype>(lineFeed, 0));
        if (line.size() < shortestLine) {
            continue;
        }
        // The first line of a tail is usually cut, and no JSON.
        if (const auto parsed = JsonObject::parse(line)) {
            takeLine(*parsed, info);
        }
    }
    return info;
}

TranscriptInfo readTail(const QString &path, TakeLine takeLine, qsizetype size) {
    return newestFirst(tailOf(path, size), takeLine);
}

std::optional<TranscriptOrigin> readOrigin(const QString &path, FindOrigin findOrigin) {
    QByteArray head = RegularFile::head(path, headSize).value_or(QByteArray());
    if (head.size() == headSize && !isUtf8(head)) {
        head.truncate(head.lastIndexOf('\n') + 1); // it may end within a character
    }
    if (!isUtf8(head)) {
        return std::nullopt;
    }
    for (const QByteArray &line : head.split('\n')) {
        const auto object = line.isEmpty() ? std::nullopt : JsonObject::parse(line);
        if (auto found = object ? findOrigin(*object) : std::nullopt) {
            return found;
        }
    }
    return std::nullopt;
}

std::optional<QString> displayLine(const std::optional<QString> &text) {
    if (!text) {
        return std::nullopt;
    }
    QString line = text->trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('<')) || line.startsWith(QLatin1Char('{'))) {
        return std::nullopt;
    }
    // Before the count, since a combining mark behind a line feed joins the blank.
    line.replace(QLatin1String("\r\n"), QLatin1String(" "));
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return BoundedText::of(line, maxCharacters);
}

} // namespace morvane::TranscriptReader
