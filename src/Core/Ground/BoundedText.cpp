#include "Core/Ground/BoundedText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace morvane::BoundedText {

namespace {

constexpr qsizetype maxUnits = 24; // a family of four with skin tones has 19
constexpr char16_t ellipsis = u'\u2026';

/// Below the first combining mark every code unit is a character, but for a line feed that
/// follows a carriage return.
bool isPlain(QStringView text) {
    return std::ranges::all_of(text,
                               [](QChar unit) { return unit.unicode() < 0x300 && unit != u'\r'; });
}

} // namespace

QString of(const QString &text, qsizetype maxCharacters) {
    // Finding boundaries costs time in proportion, so no more is looked at than may be shown. A
    // text that fills more than this has characters of more than the units that count.
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
