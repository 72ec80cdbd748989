#include "Core/Ground/VisibleText.h"

#include "Core/Ground/BoundedText.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace morvane::VisibleText {

namespace {

constexpr int mostMarks = 3;        ///< on one letter of a command
constexpr int mostMarksOfProse = 6; ///< as in Burmese
constexpr int mostJoints = 3;       ///< in one emoji, as in a family of four
constexpr char32_t tabSign = U'⇥';
constexpr char32_t escapeBegin = U'⟨';

struct Range {
    char32_t first;
    char32_t last;
};

/// Characters that look empty though their category doesn't say so: joiners and fillers, the empty
/// braille pattern, variation selectors, and what Qt puts in a text for an object.
constexpr std::array looksEmpty{
    Range{0x034F, 0x034F},   Range{0x115F, 0x1160},   Range{0x17B4, 0x17B5},
    Range{0x180B, 0x180F},   Range{0x2800, 0x2800},   Range{0x3164, 0x3164},
    Range{0xFE00, 0xFE0F},   Range{0xFFA0, 0xFFA0},   Range{0xFFFC, 0xFFFC},
    Range{0x16FE4, 0x16FE4}, Range{0x1D159, 0x1D159}, Range{0x1D173, 0x1D17A},
    Range{0xE0100, 0xE01EF},
};

/// The blocks and single signs that contain the emoji.
constexpr std::array emoji{
    Range{0x00A9, 0x00A9}, Range{0x00AE, 0x00AE}, Range{0x203C, 0x203C}, Range{0x2049, 0x2049},
    Range{0x2122, 0x2122}, Range{0x2139, 0x2139}, Range{0x2190, 0x21FF}, Range{0x2300, 0x23FF},
    Range{0x24C2, 0x24C2}, Range{0x25A0, 0x27BF}, Range{0x2900, 0x297F}, Range{0x2B00, 0x2BFF},
    Range{0x3030, 0x3030}, Range{0x303D, 0x303D}, Range{0x3297, 0x3299}, Range{0x1F000, 0x1FAFF},
};
constexpr char32_t emojiSelector = 0xFE0F;
constexpr char32_t keycap = 0x20E3; ///< around a digit

constexpr char32_t noBreakBlank = 0x00A0;
constexpr char32_t nonJoiner = 0x200C;
constexpr char32_t joiner = 0x200D;

/// The parts of Hangul that can begin a syllable, and all parts that form one character with what
/// comes before, including the sound marks of halfwidth Katakana.
constexpr std::array leadingParts{Range{0x1100, 0x115F}, Range{0xA960, 0xA97C}};
constexpr std::array parts{Range{0x1100, 0x11FF}, Range{0xA960, 0xA97C}, Range{0xD7B0, 0xD7FB},
                           Range{0xFF9E, 0xFF9F}};

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

bool isJoiner(char32_t character) {
    return character == joiner || character == nonJoiner;
}

/// Whether it forms one character with what comes before it.
bool pilesUp(char32_t character, char32_t before) {
    const bool beginsSyllable = isIn(leadingParts, character) && !isIn(leadingParts, before);
    return standsOn(character) || isJoiner(character) ||
           (isIn(parts, character) && !beginsSyllable);
}

/// Whether it is a letter that changes with its neighbours, as Arabic's do.
bool isJoining(char32_t character) {
    const auto type = QChar::joiningType(character);
    return type == QChar::Joining_Dual || type == QChar::Joining_Right ||
           type == QChar::Joining_Left;
}

/// Whether it is the sign of Indian scripts that joins the letters around it.
bool isVirama(char32_t character) {
    constexpr int combiningClass = 9;
    return QChar::combiningClass(character) == combiningClass;
}

bool isOnKeycap(char32_t character) {
    return (character >= U'0' && character <= U'9') || character == U'#' || character == U'*';
}

enum class TextKind {
    code,  ///< in which every character counts
    prose, ///< which people write to each other
};

/// Walks along a text and tells which characters can be shown as they are.
class Sight {
public:
    explicit Sight(TextKind kind) : m_isProse(kind == TextKind::prose) {}

    bool shows(char32_t character, char32_t after) {
        const bool isMark = standsOn(character);
        m_marks = pilesUp(character, m_before) ? m_marks + 1 : 0;
        if (character == joiner) {
            ++m_joints;
        } else if (!isMark && m_before != joiner) {
            m_joints = 0;
        }
        // A mark on a blank is no easier to see than the blank.
        const bool hasGround = m_ground != 0 && m_ground != U' ' && m_ground != noBreakBlank;
        const bool result = m_marks <= (m_isProse ? mostMarksOfProse : mostMarks) &&
                            (!isMark || hasGround) &&
                            (!isHidden(character) || (m_isProse && isOfWriting(character, after)));
        m_before = result ? character : 0;
        m_ground = isMark ? m_ground : m_before;
        return result;
    }

private:
    /// Whether a character without a glyph shows by its effect on its neighbours.
    bool isOfWriting(char32_t character, char32_t after) const {
        switch (character) {
        case noBreakBlank:
            return true;
        case emojiSelector:
            return isIn(emoji, m_before) || (isOnKeycap(m_before) && after == keycap);
        case joiner:
            if (isIn(emoji, m_ground)) {
                return isIn(emoji, after) && m_joints <= mostJoints;
            }
            return isBetweenLetters(after);
        case nonJoiner:
            return isBetweenLetters(after);
        default:
            return false;
        }
    }

    /// Letters of a script that has joiners; one is enough, since "API" may get a Persian ending.
    bool isBetweenLetters(char32_t after) const {
        const bool areLetters = QChar::isLetter(m_ground) && QChar::isLetter(after);
        return isVirama(m_before) || (QChar::isLetter(m_before) && isVirama(after)) ||
               (areLetters && (isJoining(m_ground) || isJoining(after)));
    }

    const bool m_isProse;
    int m_marks = 0;       ///< on the last letter
    int m_joints = 0;      ///< of the last emoji
    char32_t m_before = 0; ///< what has just been shown
    char32_t m_ground = 0; ///< the last character shown that is no mark
};

/// Whether it is written from right to left, and so reorders its neighbours.
bool isFromTheRight(char32_t character) {
    const auto direction = QChar::direction(character);
    return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
}

/// Returns the same for every text of these characters, whichever way its brackets open.
QString inAnyOrder(QString text) {
    for (QChar &unit : text) {
        unit = std::min(unit, unit.mirroredChar());
    }
    std::ranges::sort(text);
    return text;
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
QString spelled(QStringView text, IsSpecial isSpecial, Escaped escaped,
                TextKind kind = TextKind::code) {
    QString result;
    result.reserve(text.size());
    Sight sight(kind);
    while (!text.isEmpty()) {
        const char32_t character = firstCharacter(text);
        const qsizetype length = QChar::requiresSurrogates(character) ? 2 : 1;
        const QStringView rest = text.sliced(length);
        const bool isShown = sight.shows(character, rest.isEmpty() ? 0 : firstCharacter(rest));
        if (isShown && !isSpecial(character)) {
            result += text.first(length);
        } else {
            result += escaped(character);
        }
        text = rest;
    }
    return result;
}

bool isSpecialInText(char32_t character) {
    return character == tabSign || character == escapeBegin;
}

/// Every blank becomes the usual one, or a no-break one if it keeps its neighbours together.
QString prose(QString line) {
    for (QChar &character : line) {
        if (character.category() == QChar::Separator_Space) {
            const bool breaks = character.decompositionTag() != QChar::NoBreak;
            character = QChar(breaks ? U' ' : noBreakBlank);
        }
    }
    return spelled(line, &isSpecialInText, &escapedInText, TextKind::prose);
}

} // namespace

QString of(QStringView line) {
    QString result = spelled(line, &isSpecialInText, &escapedInText);
    // A blank at the end changes what the text means, above all behind a backslash. The blanks
    // before it show by the space that they take.
    if (line.endsWith(u' ')) {
        result.chop(1);
        result += escapedInText(U' ');
    }
    return result;
}

QString paragraph(const QString &text) {
    QStringList lines = text.split(u'\n');
    for (QString &line : lines) {
        line = prose(line);
    }
    return lines.join(u'\n');
}

QString look(const QString &text) {
    QString result = paragraph(text);
    result.removeIf(
        [](QChar unit) { return isJoiner(unit.unicode()) || unit.unicode() == emojiSelector; });
    result = result.normalized(QString::NormalizationForm_C).simplified();
    return std::ranges::any_of(result.toUcs4(), isFromTheRight) ? inAnyOrder(result) : result;
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
