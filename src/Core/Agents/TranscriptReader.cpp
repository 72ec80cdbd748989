#include "Core/Agents/TranscriptReader.h"

#include "Core/Ground/JsonObject.h"
#include "Core/Ground/RegularFile.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace morvane::TranscriptReader {

namespace {

using simdjson::dom::object;

constexpr qsizetype tailSize = 262'144;
constexpr int maxCharacters = 120;

/// Where the text's 121st character begins, or -1 when it has no more than 120. Looks at no more
/// of a long text than it must, since finding boundaries costs time in proportion.
qsizetype cutPosition(const QString &text) {
    for (qsizetype window = 1024; text.size() > maxCharacters; window *= 8) {
        const QString part = text.left(window);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, part);
        qsizetype position = 0;
        int count = 0;
        while (count < maxCharacters && position >= 0) {
            position = finder.toNextBoundary();
            ++count;
        }
        // A boundary at the window's end, or in a pair of surrogates that it splits, may be the
        // window's and not the text's.
        const bool isWhole = part.size() == text.size();
        if (position >= 0 && position < part.size() - (isWhole ? 0 : 1)) {
            return position;
        }
        if (isWhole) {
            break;
        }
    }
    return -1;
}

std::string_view word(object source, std::string_view key) {
    std::string_view result;
    return source[key].get(result) == simdjson::SUCCESS ? result : std::string_view();
}

/// The integer under the key; one beyond all reason counts as missing.
std::optional<int> integer(object source, std::string_view key) {
    std::int64_t value = 0;
    const bool isInteger = source[key].get(value) == simdjson::SUCCESS;
    return isInteger && std::in_range<int>(value) ? std::optional(static_cast<int>(value))
                                                  : std::nullopt;
}

/// Lines come newest first, so what is there stays.
template <typename Value>
void fill(std::optional<Value> &field, const std::optional<Value> &value) {
    if (!field) {
        field = value;
    }
}

std::optional<int> positive(std::int64_t count) {
    return count >= 1 && std::in_range<int>(count) ? std::optional(static_cast<int>(count))
                                                   : std::nullopt;
}

std::vector<object> contentOf(object message) {
    return JsonObject::objects(message, "content").value_or(std::vector<object>());
}

/// The first text on the way through the blocks that is fit for a person.
template <typename Block>
std::optional<QString> firstLine(Block begin, Block end) {
    for (Block block = begin; block != end; ++block) {
        if (const auto line = displayLine(JsonObject::string(*block, "text"))) {
            return line;
        }
    }
    return std::nullopt;
}

std::optional<QString> firstLine(const std::vector<object> &blocks) {
    return firstLine(blocks.begin(), blocks.end());
}

std::optional<QString> lastLine(const std::vector<object> &blocks) {
    return firstLine(blocks.rbegin(), blocks.rend());
}

std::optional<int> contextTokens(object usage) {
    std::int64_t sum = 0;
    for (const char *key :
         {"input_tokens", "cache_read_input_tokens", "cache_creation_input_tokens"}) {
        sum += integer(usage, key).value_or(0);
    }
    return positive(sum);
}

void takeClaudeMessage(object message, TranscriptInfo &info) {
    if (auto model = JsonObject::string(message, "model")) {
        fill(info.model, std::optional(model->remove(QLatin1String("claude-"))));
    }
    if (const auto usage = JsonObject::object(message, "usage")) {
        fill(info.contextTokens, contextTokens(*usage));
    }
    if (!info.lastAssistantText) {
        std::vector<object> blocks = contentOf(message);
        std::erase_if(blocks, [](object block) { return word(block, "type") != "text"; });
        info.lastAssistantText = lastLine(blocks);
    }
}

void takeClaudeLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    if (type == "permission-mode") {
        fill(info.permissionMode, line.string("permissionMode"));
    } else if (type == "ai-title") {
        fill(info.title, displayLine(line.string("aiTitle")));
    } else if (type == "assistant") {
        if (const auto message = JsonObject::object(line.root(), "message")) {
            takeClaudeMessage(*message, info);
        }
    }
}

/// Codex marks what it says on the way to its answer with a phase of its own. The answer has none,
/// or one whose name depends on the model.
bool isOnTheWay(object message) {
    std::string_view phase;
    return message["phase"].get(phase) == simdjson::SUCCESS && phase != "final" &&
           phase != "final_answer";
}

void takeCodexMessage(object message, TranscriptInfo &info) {
    const std::string_view role = word(message, "role");
    if (role == "assistant" && !info.lastAssistantText && !isOnTheWay(message)) {
        info.lastAssistantText = lastLine(contentOf(message));
    } else if (role == "user" && !info.title) {
        info.title = firstLine(contentOf(message));
    }
}

std::optional<int> lastInputTokens(object tokenCount) {
    const auto counts = JsonObject::object(tokenCount, "info");
    const auto usage = counts ? JsonObject::object(*counts, "last_token_usage") : std::nullopt;
    return usage ? positive(integer(*usage, "input_tokens").value_or(0)) : std::nullopt;
}

void takeCodexLine(const JsonObject &line, TranscriptInfo &info) {
    const std::string_view type = word(line.root(), "type");
    const auto payload = JsonObject::object(line.root(), "payload");
    if (!payload) {
        return;
    }
    const std::string_view kind = word(*payload, "type");
    if (type == "turn_context") {
        fill(info.model, JsonObject::string(*payload, "model"));
        fill(info.permissionMode, JsonObject::string(*payload, "approval_policy"));
    } else if (type == "event_msg" && kind == "token_count") {
        fill(info.contextTokens, lastInputTokens(*payload));
    } else if (type == "response_item" && kind == "message") {
        takeCodexMessage(*payload, info);
    }
}

template <typename TakeLine>
TranscriptInfo newestFirst(QByteArrayView lines, TakeLine takeLine) {
    TranscriptInfo info;
    if (!simdjson::validate_utf8(lines.data(), static_cast<std::size_t>(lines.size()))) {
        return info;
    }
    while (!lines.isEmpty() && !info.isComplete()) {
        const qsizetype lineFeed = lines.lastIndexOf('\n');
        const QByteArrayView line = lines.sliced(lineFeed + 1);
        lines.truncate(std::max<qsizetype>(lineFeed, 0));
        if (line.isEmpty()) {
            continue;
        }
        // The first line of a tail is usually cut, and no JSON.
        if (const auto parsed = JsonObject::parse(line)) {
            takeLine(*parsed, info);
        }
    }
    return info;
}

/// The end of the file. Where that begins within a character, the rest of it is left out: it is
/// part of a cut line, and would make bad UTF-8 of all the others.
QByteArray tailOf(const QString &path) {
    constexpr qsizetype longestRest = 3;
    QByteArray tail = RegularFile::tail(path, tailSize).value_or(QByteArray());
    if (tail.size() == tailSize) {
        const auto isRest = [](char byte) { return (byte & 0xC0) == 0x80; };
        const auto begin = std::find_if_not(tail.cbegin(), tail.cbegin() + longestRest, isRest);
        tail.remove(0, begin - tail.cbegin());
    }
    return tail;
}

} // namespace

TranscriptInfo claudeInfo(QByteArrayView lines) {
    return newestFirst(lines, takeClaudeLine);
}

TranscriptInfo codexInfo(QByteArrayView lines) {
    return newestFirst(lines, takeCodexLine);
}

TranscriptInfo readClaude(const QString &path) {
    return claudeInfo(tailOf(path));
}

TranscriptInfo readCodex(const QString &path) {
    return codexInfo(tailOf(path));
}

std::optional<QString> displayLine(const std::optional<QString> &text) {
    if (!text) {
        return std::nullopt;
    }
    QString line = text->trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char('<')) || line.startsWith(QLatin1Char('{'))) {
        return std::nullopt;
    }
    // Before the count, since a mark that follows a line feed joins the blank.
    line.replace(QLatin1String("\r\n"), QLatin1String(" "));
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    if (const qsizetype cut = cutPosition(line); cut >= 0) {
        line.truncate(cut);
        line.append(QChar(0x2026));
    }
    return line;
}

} // namespace morvane::TranscriptReader
