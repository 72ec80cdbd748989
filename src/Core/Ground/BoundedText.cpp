#include "Core/Ground/BoundedText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace morvane::BoundedText {

namespace {

constexpr qsizetype maxUnits = 24; // of a character; the emoji of a family with skin tones has 19
constexpr char16_t ellipsis = u'\u2026';

/// Below U+0300, the first combining mark, every code unit is a character of its own, except for a
/// line feed behind a carriage return.
bool isPlain(QStringView text) {
    return std::ranges::all_of(text,
                               [](QChar unit) { return unit.unicode() < 0x300 && unit != u'\r'; });
}

} // namespace

QString of(const QString &text, qsizetype maxCharacters) {
    // Finding boundaries takes time in proportion to the text, so only the part that may be shown
    // is searched. If it is too short for `maxCharacters`, some of them exceed `maxUnits`.
    QString part = text.left(maxCharacters * maxUnits + 1);
    if (part.size() < text.size() && part.back().isHighSurrogate()) {
        part.chop(1);
    }
    if (isPlain(part)) {
        return text.size() > maxCharacters ? text.left(maxCharacters) + ellipsis : text;
    }
    QString result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, part);
    qsizetype begin = 0;
    for (qsizetype count = 0; count < maxCharacters && begin < part.size(); ++count) {
        const qsizetype end = finder.toNextBoundary();
        qsizetype length = std::min(end - begin, maxUnits);
        if (length < end - begin && part[begin + length - 1].isHighSurrogate()) {
            --length;
        }
        result.append(QStringView(part).sliced(begin, length));
        begin = end;
    }
    return begin < text.size() ? result + ellipsis : result;
}

} // namespace morvane::BoundedText
