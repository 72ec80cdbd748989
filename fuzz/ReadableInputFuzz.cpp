#include "Core/Agents/ReadableInput.h"
#include "Core/Ground/VisibleText.h"

#include <QString>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

// What a person reads before they allow a call must decode to what the agent has sent, whatever its
// code units. Prose must decode to the same text but for its kinds of spaces, and may hold no
// invisible characters but joiners.
namespace {

using namespace morvane;
using Sign = ReadableInput::Sign;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// A JSON string in which every code unit is escaped.
std::string spelled(const QString &text) {
    std::string result = "\"";
    for (const QChar unit : text) {
        result += "\\u" + QString::number(unit.unicode(), 16).rightJustified(4, u'0').toStdString();
    }
    return result + '"';
}

/// Undoes the notation that makes invisible characters visible.
QString decoded(QString line) {
    line.replace(QStringLiteral("⇥   "), QStringLiteral("\t"));
    QString result;
    qsizetype begin = 0;
    for (qsizetype at = 0; (at = line.indexOf(QStringLiteral("⟨U+"), begin)) >= 0;) {
        const qsizetype end = line.indexOf(u'⟩', at);
        require(end > at);
        const char32_t number = line.mid(at + 3, end - at - 3).toUInt(nullptr, 16);
        result += line.mid(begin, at - begin);
        result += number < 0x10000 ? QString(QChar(static_cast<char16_t>(number)))
                                   : QString::fromUcs4(&number, 1);
        begin = end + 1;
    }
    return result + line.mid(begin);
}

QString told(const ReadableInput &input, std::initializer_list<Sign> signs) {
    QStringList lines;
    for (const auto &[sign, text] : input.lines) {
        if (std::find(signs.begin(), signs.end(), sign) != signs.end()) {
            lines.append(decoded(text));
        }
    }
    return lines.join(u'\n');
}

bool isInSight(const QString &line) {
    return std::all_of(line.begin(), line.end(), [](QChar unit) {
        return unit.category() != QChar::Other_Control && unit.category() != QChar::Other_Format;
    });
}

QString withUsualBlanks(QString text) {
    for (QChar &unit : text) {
        unit = unit.category() == QChar::Separator_Space ? QChar(u' ') : unit;
    }
    return text;
}

QString withoutJoiners(QString text) {
    return text.removeIf([](QChar unit) { return unit == u'\u200c' || unit == u'\u200d'; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    QString text(static_cast<qsizetype>(size / 2), Qt::Uninitialized);
    std::memcpy(text.data(), data, size / 2 * 2);

    const ReadableInput command = ReadableInput::of("{\"command\":" + spelled(text) + "}");
    for (const auto &line : command.lines) {
        require(isInSight(line.text));
    }
    if (!command.isCut && !text.trimmed().isEmpty()) {
        require(told(command, {Sign::plain}) == text);
    }

    const QString prose = VisibleText::paragraph(text);
    require(withUsualBlanks(decoded(prose)) == withUsualBlanks(text));
    for (const QString &line : prose.split(u'\n')) {
        require(isInSight(withoutJoiners(line)));
    }

    const QString before = text.section(QChar(0), 0, 0);
    const QString after = text.section(QChar(0), 1);
    const ReadableInput edit = ReadableInput::of("{\"old_string\":" + spelled(before) +
                                                 ",\"new_string\":" + spelled(after) + "}");
    if (!edit.isCut && before != after) {
        require(told(edit, {Sign::plain, Sign::removed}) == before);
        require(told(edit, {Sign::plain, Sign::added}) == after);
    }
    return 0;
}
