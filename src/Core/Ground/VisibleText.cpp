#include "Core/Ground/VisibleText.h"

#include "Core/Ground/BoundedText.h"

#include <algorithm>
#include <array>

namespace morvane::VisibleText {

namespace {

constexpr int mostMarks = 3; ///< on one letter; no language needs more
constexpr char32_t tabSign = U'⇥';
constexpr char32_t escapeBegin = U'⟨';

struct Range {
    char32_t first;
    char32_t last;
};

/// What leaves nothing to be seen though its category doesn't say so: joiners and fillers, the
/// empty braille pattern, the selectors of variants, and what Qt keeps for an object in a text.
constexpr std::array looksEmpty{
    Range{0x034F, 0x034F},   Range{0x115F, 0x1160},   Range{0x17B4, 0x17B5},
    Range{0x180B, 0x180F},   Range{0x2800, 0x2800},   Range{0x3164, 0x3164},
    Range{0xFE00, 0xFE0F},   Range{0xFFA0, 0xFFA0},   Range{0xFFFC, 0xFFFC},
    Range{0x16FE4, 0x16FE4}, Range{0x1D159, 0x1D159}, Range{0x1D173, 0x1D17A},
    Range{0xE0100, 0xE01EF},
};

template <std::size_t count>
bool isIn(const std::array<Range, count> &ranges, char32_t character) {
    return std::ranges::any_of(ranges, [character](const Range &range) {
        return character >= range.first && character <= range.last;
    });
}

bool isHidden(char32_t character) {
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Separator_Space:
        return character != U' ';
    default:
        return isIn(looksEmpty, character);
    }
}

/// Whether it is drawn on what comes before it: a mark, or a skin tone.
bool standsOn(char32_t character) {
    return QChar::isMark(character) || (character >= 0x1F3FB && character <= 0x1F3FF);
}

/// Whether it makes one character with what comes before it, as Hangul's parts do.
bool joins(char32_t character) {
    constexpr std::array pilesUp{Range{0x1100, 0x11FF}, Range{0xA960, 0xA97C},
                                 Range{0xD7B0, 0xD7FB}, Range{0xFF9E, 0xFF9F}};
    return standsOn(character) || isIn(pilesUp, character);
}

QString hex(char32_t number) {
    return QString::number(static_cast<uint>(number), 16).rightJustified(4, u'0');
}

QString escapedInText(char32_t character) {
    return character == U'\t' ? QStringLiteral("⇥   ")
                              : QStringLiteral("⟨U+%1⟩").arg(hex(character).toUpper());
}

QString escapedInJson(char32_t character) {
    constexpr std::string_view plain = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    if (character < 0x80) {
        const auto at = plain.find(static_cast<char>(character));
        if (at != plain.npos) {
            return QString(u'\\') + QLatin1Char(letters[at]);
        }
    }
    const auto spelledUnit = [](char16_t unit) { return QStringLiteral("\\u") + hex(unit); };
    if (QChar::requiresSurrogates(character)) {
        return spelledUnit(QChar::highSurrogate(character)) +
               spelledUnit(QChar::lowSurrogate(character));
    }
    return spelledUnit(static_cast<char16_t>(character));
}

template <typename IsSpecial, typename Escaped>
QString spelled(QStringView text, IsSpecial isSpecial, Escaped escaped) {
    QString result;
    result.reserve(text.size());
    int marks = 0;
    bool hasGround = false; // a mark on a blank is as little to be seen as the blank
    while (!text.isEmpty()) {
        const char32_t character = firstCharacter(text);
        const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
        marks = joins(character) ? marks + 1 : 0;
        const bool isMark = standsOn(character);
        hasGround = isMark ? hasGround : character != U' ' && character != U'\t';
        if (isSpecial(character) || isHidden(character) || marks > mostMarks ||
            (isMark && !hasGround)) {
            result += escaped(character);
        } else {
            result += text.first(length);
        }
        text = text.sliced(length);
    }
    return result;
}

} // namespace

QString of(QStringView line) {
    const auto isSpecial = [](char32_t c) { return c == tabSign || c == escapeBegin; };
    QString result = spelled(line, isSpecial, &escapedInText);
    // A blank at the end, behind a backslash above all, makes another text of it. Those before it
    // show by the room that they take.
    if (line.endsWith(u' ')) {
        result.chop(1);
        result += escapedInText(U' ');
    }
    return result;
}

QString paragraph(const QString &text) {
    QStringList lines = text.split(u'\n');
    for (QString &line : lines) {
        line = of(line);
    }
    return lines.join(u'\n');
}

QString name(const QString &text) {
    return of(BoundedText::of(text, BoundedText::lineLength));
}

char32_t firstCharacter(QStringView text) {
    const bool isPair = text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate();
    return isPair ? QChar::surrogateToUcs4(text[0], text[1]) : text[0].unicode();
}

QString quoted(QStringView text) {
    const auto isSpecial = [](char32_t c) { return c == U'"' || c == U'\\'; };
    return u'"' + spelled(text, isSpecial, &escapedInJson) + u'"';
}

} // namespace morvane::VisibleText
