#include "Presentation/Panel/InputRows.h"

#include "Core/Ground/VisibleText.h"
#include "Presentation/Style/TextRows.h"

#include <QFontMetrics>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

using VisibleText::firstCharacter;

constexpr double overlap = 0.35; ///< of a column, by which a letter of another font may overhang

/// Whether every character takes one column.
bool isPlain(QStringView text) {
    return std::ranges::all_of(text,
                               [](QChar unit) { return unit >= u' ' && unit.unicode() < 0x7F; });
}

/// The largest advance of a printable ASCII character; in a fixed-width font they are all equal.
double widestOf(const QFont &font) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t character = u' '; character < 0x7F; ++character) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(character)));
    }
    return widest;
}

} // namespace

InputRows::InputRows(const QFont &font) : m_font(font), m_columnWidth(widestOf(font)) {}

void InputRows::setLines(const QList<Line> &lines) {
    m_lines = lines;
    m_columns.clear();
    m_width.reset();
}

const QList<InputRows::Row> &InputRows::at(int width) const {
    if (width != m_width) {
        m_width = width;
        m_rows.clear();
        const auto columns = static_cast<qsizetype>(width / m_columnWidth);
        for (qsizetype line = 0; line < m_lines.size(); ++line) {
            if (m_lines[line].sign == ReadableInput::Sign::prose) {
                appendWords(line, width);
            } else {
                appendCells(line, std::max<qsizetype>(2, columns));
            }
        }
    }
    return m_rows;
}

qsizetype InputRows::cellLength(QStringView text) {
    const auto unitsOf = [](char32_t character) {
        return qsizetype(QChar::requiresSurrogates(character) ? 2 : 1);
    };
    qsizetype length = unitsOf(firstCharacter(text));
    while (length < text.size()) {
        const char32_t next = firstCharacter(text.sliced(length));
        const bool isSkinTone = next >= 0x1F3FB && next <= 0x1F3FF;
        if (!QChar::isMark(next) && !isSkinTone) {
            break;
        }
        length += unitsOf(next);
    }
    return length;
}

qsizetype InputRows::columnsOf(const QString &cell) const {
    if (cell.size() == 1 && isPlain(cell)) {
        return 1;
    }
    auto known = m_columns.constFind(cell);
    if (known == m_columns.constEnd()) {
        const double advance = QFontMetricsF(m_font).horizontalAdvance(cell);
        const auto columns = static_cast<qsizetype>(std::ceil(advance / m_columnWidth - overlap));
        known = m_columns.insert(cell, std::max<qsizetype>(columns, 1));
    }
    return *known;
}

void InputRows::appendCells(qsizetype line, qsizetype columns) const {
    const QString &text = m_lines[line].text;
    qsizetype begin = 0;
    if (isPlain(text)) {
        for (; text.size() - begin > columns; begin += columns) {
            m_rows.append({line, begin, columns});
        }
    } else {
        qsizetype taken = 0;
        for (qsizetype at = 0; at < text.size();) {
            const QString cell = text.mid(at, cellLength(QStringView(text).sliced(at)));
            const qsizetype needed = columnsOf(cell);
            if (at > begin && taken + needed > columns) {
                m_rows.append({line, begin, at - begin});
                begin = at;
                taken = 0;
            }
            taken += needed;
            at += cell.size();
        }
    }
    m_rows.append({line, begin, text.size() - begin});
}

void InputRows::appendWords(qsizetype line, int width) const {
    const QString &text = m_lines[line].text;
    for (const TextRow &row : textRows(text, m_font, width)) {
        qsizetype length = row.length;
        // In right-to-left text a blank at the end would be drawn before the words.
        while (length > 0 && text[row.begin + length - 1].isSpace()) {
            --length;
        }
        m_rows.append({line, row.begin, length});
    }
}

} // namespace morvane
