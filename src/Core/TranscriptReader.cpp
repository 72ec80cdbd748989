#include "Core/TranscriptReader.h"

#include <QTextBoundaryFinder>

namespace morvane::TranscriptReader {

namespace {

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

} // namespace

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
