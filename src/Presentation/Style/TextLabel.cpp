#include "Presentation/Style/TextLabel.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextRows.h"

#include <QPainter>

#include <algorithm>

namespace morvane {

namespace {

bool isControl(QChar character) {
    return character.category() == QChar::Other_Control ||
           character.category() == QChar::Separator_Line ||
           character.category() == QChar::Separator_Paragraph;
}

bool turnsDirection(QChar character) {
    return (character >= u'\u202a' && character <= u'\u202e') ||
           (character >= u'\u2066' && character <= u'\u2069');
}

/// The direction of the paragraph around a position in the text, whichever of its lines begins
/// there.
Qt::LayoutDirection directionAt(QStringView text, qsizetype place) {
    const auto begin = text.first(place).lastIndexOf(QChar::LineSeparator) + 1;
    const auto end = text.indexOf(QChar::LineSeparator, place);
    const QStringView paragraph = text.first(end < 0 ? text.size() : end).sliced(begin);
    return paragraph.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
}

} // namespace

TextLabel::TextLabel(const QFont &font, const QColor &color, int maxLines, QWidget *parent)
    : QLabel(parent), m_color(color), m_maxLines(maxLines) {
    setFont(font);
    setTextFormat(Qt::PlainText);
    // A fixed height would hold text of several lines down to the one line of the size hint.
    setSizePolicy(QSizePolicy::Preferred,
                  maxLines == 1 ? QSizePolicy::Fixed : QSizePolicy::Preferred);
}

void TextLabel::setColor(const QColor &color) {
    if (color != m_color) {
        m_color = color;
        update();
    }
}

/// Names and prompts come from outside. A newline breaks the line only where there may be
/// several; any other control character or separator becomes a space, and a character that would
/// turn the direction of all the text after it is dropped.
QString TextLabel::printable() const {
    QString result = BoundedText::of(text(), m_maxLines > 0 ? m_maxLines * BoundedText::lineLength
                                                            : BoundedText::paragraphLength);
    const QChar lineBreak = m_maxLines == 1 ? QChar(u' ') : QChar(QChar::LineSeparator);
    for (QChar &character : result) {
        if (character == u'\n') {
            character = lineBreak;
        } else if (isControl(character)) {
            character = u' ';
        }
    }
    result.removeIf(&turnsDirection);
    return result;
}

const QStringList &TextLabel::lines(int width) const {
    if (m_broken.width != width || m_broken.text != text()) {
        m_broken = broken(width);
    }
    return m_broken.lines;
}

TextLabel::Broken TextLabel::broken(int width) const {
    const QString whole = printable();
    Broken result{text(), width, {}, {}};
    const auto append = [&](qsizetype begin, const QString &line) {
        result.lines.append(line);
        result.directions.append(directionAt(whole, begin));
    };
    if (m_maxLines == 1) {
        append(0, fontMetrics().elidedText(whole, Qt::ElideRight, width));
        return result;
    }
    for (const TextRow &row : textRows(whole, font(), width, m_maxLines)) {
        const bool isLast = m_maxLines > 0 && result.lines.size() == m_maxLines - 1;
        if (isLast) {
            const QString rest = whole.mid(row.begin).replace(QChar::LineSeparator, u' ');
            append(row.begin, fontMetrics().elidedText(rest, Qt::ElideRight, width));
        } else {
            append(row.begin, whole.mid(row.begin, row.length).trimmed());
        }
    }
    return result;
}

int TextLabel::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    const int inner = std::max(1, width - margins.left() - margins.right());
    const auto count = static_cast<int>(std::max<qsizetype>(1, lines(inner).size()));
    return count * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
}

QSize TextLabel::sizeHint() const {
    if (m_measured.width < 0 || m_measured.text != text()) {
        m_measured = {text(), fontMetrics().horizontalAdvance(printable()) + 1, {}, {}};
    }
    const QSize whole(m_measured.width, fontMetrics().lineSpacing());
    return whole.grownBy(contentsMargins());
}

QSize TextLabel::minimumSizeHint() const {
    const int ellipsis = fontMetrics().horizontalAdvance(QChar(u'…')) + 1;
    const QSize whole = sizeHint();
    return {std::min(whole.width(), ellipsis), whole.height()};
}

void TextLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(isEnabled() ? m_color : Colors::faded(m_color, Colors::waiting));
    // Positioned by the baseline: in a box of text it would move with letters of another font.
    const QRect area = contentsRect();
    QPoint start(area.left(), area.top() + fontMetrics().ascent());
    const QStringList &texts = lines(area.width());
    for (qsizetype line = 0; line < texts.size(); ++line) {
        const QString &text = texts[line];
        painter.setLayoutDirection(m_broken.directions[line]);
        if (alignment().testFlag(Qt::AlignHCenter)) {
            start.setX(area.left() + (area.width() - fontMetrics().horizontalAdvance(text)) / 2);
        }
        painter.drawText(start, text);
        start.ry() += fontMetrics().lineSpacing();
    }
}

} // namespace morvane

#include "moc_TextLabel.cpp"
