#include "Presentation/TextLabel.h"

#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

namespace morvane {

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

QStringList TextLabel::lines(int width) const {
    QString whole = text();
    whole.replace(u'\n', m_maxLines == 1 ? QChar(u' ') : QChar(QChar::LineSeparator));
    QTextLayout layout(whole, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList result;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const bool isLast = m_maxLines > 0 && result.size() == m_maxLines - 1;
        if (isLast) {
            const QString rest = whole.mid(line.textStart()).replace(QChar::LineSeparator, u' ');
            result.append(fontMetrics().elidedText(rest, Qt::ElideRight, width));
            break;
        }
        result.append(whole.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return result;
}

int TextLabel::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    const int inner = std::max(1, width - margins.left() - margins.right());
    const auto count = static_cast<int>(std::max<qsizetype>(1, lines(inner).size()));
    return count * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
}

QSize TextLabel::sizeHint() const {
    const QSize whole(fontMetrics().horizontalAdvance(text()) + 1, fontMetrics().lineSpacing());
    return whole.grownBy(contentsMargins());
}

QSize TextLabel::minimumSizeHint() const {
    const int ellipsis = fontMetrics().horizontalAdvance(QChar(u'…')) + 1;
    const QSize whole = sizeHint();
    return {std::min(whole.width(), ellipsis), whole.height()};
}

void TextLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(m_color);
    QRect line = contentsRect();
    line.setHeight(fontMetrics().lineSpacing());
    const int horizontal = static_cast<int>(alignment() & Qt::AlignHorizontal_Mask);
    for (const QString &text : lines(line.width())) {
        painter.drawText(line, horizontal | Qt::AlignTop | Qt::TextSingleLine, text);
        line.translate(0, line.height());
    }
}

} // namespace morvane
