#include "Presentation/Panel/InputView.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>
#include <optional>

namespace morvane {

namespace {

using Line = ReadableInput::Line;
using Sign = ReadableInput::Sign;

constexpr int padding = 7;
constexpr int gutter = 14; ///< for the signs
constexpr int linesOfANotch = 3;
constexpr int usualHeightLimit = 160;
constexpr double groundRadius = 6;
constexpr double changedGround = 0.1;
constexpr double thumbWidth = 3;
constexpr double smallestThumb = 16;

/// Lays out what follows from left to right, each letter where it was sent.
constexpr QChar leftToRight(u'\u202d');

QColor colorOf(Sign sign) {
    switch (sign) {
    case Sign::removed:
        return Colors::removedLine;
    case Sign::added:
        return Colors::addedLine;
    case Sign::aside:
        return Colors::secondaryText;
    case Sign::plain:
        break;
    }
    return Colors::white(0.86);
}

std::optional<QChar> mark(Sign sign) {
    switch (sign) {
    case Sign::removed:
        return u'\u2212';
    case Sign::added:
        return u'+';
    default:
        return std::nullopt;
    }
}

/// Whether every character takes one column.
bool isPlain(QStringView text) {
    return std::ranges::all_of(text,
                               [](QChar unit) { return unit >= u' ' && unit.unicode() < 0x7F; });
}

QString accessibleText(const QList<Line> &lines) {
    QStringList result;
    for (const Line &line : lines) {
        const auto sign = mark(line.sign);
        result.append(sign ? *sign + QStringLiteral(" ") + line.text : line.text);
    }
    return result.join(u'\n');
}

} // namespace

InputView::InputView(QWidget *parent) : QWidget(parent), m_heightLimit(usualHeightLimit) {
    setFont(Typography::code(Typography::secondarySize));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void InputView::setLines(const QList<Line> &lines) {
    if (lines == m_lines) {
        return;
    }
    m_lines = lines;
    m_hasSigns =
        std::ranges::any_of(lines, [](const Line &line) { return mark(line.sign).has_value(); });
    m_piecesWidth = -1;
    m_offset = 0;
    setAccessibleName(accessibleText(lines));
    updateGeometry();
    update();
}

void InputView::setHeightLimit(int limit) {
    if (limit != m_heightLimit) {
        m_heightLimit = limit;
        updateGeometry();
    }
}

int InputView::textLeft() const {
    return padding + (m_hasSigns ? gutter : 0);
}

int InputView::contentHeight(int width) const {
    return static_cast<int>(pieces(width).size()) * fontMetrics().lineSpacing() + 2 * padding;
}

/// Of whole lines, so that it can be told from the last one that there are more.
int InputView::heightForWidth(int width) const {
    const int line = fontMetrics().lineSpacing();
    const int fitting = std::max(1, (m_heightLimit - 2 * padding) / line) * line + 2 * padding;
    return std::min(contentHeight(width), fitting);
}

QSize InputView::sizeHint() const {
    const int usualWidth = 400;
    return {usualWidth, heightForWidth(usualWidth)};
}

const QList<InputView::Piece> &InputView::pieces(int width) const {
    if (width != m_piecesWidth) {
        m_piecesWidth = width;
        m_pieces.clear();
        for (qsizetype line = 0; line < m_lines.size(); ++line) {
            appendPieces(m_pieces, line, std::max(1, width - textLeft() - padding));
        }
    }
    return m_pieces;
}

void InputView::appendPieces(QList<Piece> &list, qsizetype line, int width) const {
    const QString &text = m_lines[line].text;
    if (isPlain(text)) {
        const double advance = QFontMetricsF(font()).horizontalAdvance(u'0');
        const auto columns = std::max<qsizetype>(1, static_cast<qsizetype>(width / advance));
        qsizetype begin = 0;
        do {
            const qsizetype length = std::min(columns, text.size() - begin);
            list.append({line, begin, length});
            begin += length;
        } while (begin < text.size());
        return;
    }
    QTextLayout layout(leftToRight + text, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAnywhere);
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine()) {
        row.setLineWidth(width);
        const qsizetype begin = std::max(0, row.textStart() - 1);
        list.append({line, begin, row.textStart() + row.textLength() - 1 - begin});
    }
    layout.endLayout();
}

void InputView::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::codeGround);
    painter.drawRoundedRect(rect(), groundRadius, groundRadius);
    painter.setClipRect(rect().adjusted(0, padding, 0, -padding));
    const int lineHeight = fontMetrics().lineSpacing();
    const QList<Piece> &all = pieces(width());
    const QRect dirty = event->rect();
    const auto first = std::max(0, (dirty.top() - padding + m_offset) / lineHeight);
    const auto end = (dirty.bottom() - padding + m_offset) / lineHeight + 1;
    for (qsizetype row = first; row < std::min<qsizetype>(end, all.size()); ++row) {
        paint(painter, all[row], padding - m_offset + static_cast<int>(row) * lineHeight);
    }
    paintThumb(painter);
}

void InputView::paint(QPainter &painter, const Piece &piece, int top) const {
    const Line &line = m_lines[piece.line];
    const QColor color = colorOf(line.sign);
    const int baseline = top + fontMetrics().ascent();
    if (const auto sign = mark(line.sign)) {
        painter.fillRect(0, top, width(), fontMetrics().lineSpacing(),
                         Colors::faded(color, changedGround));
        painter.setPen(color);
        if (piece.begin == 0) {
            painter.drawText(padding, baseline, QString(*sign));
        }
    }
    painter.setPen(color);
    const QString text = line.text.mid(piece.begin, piece.length);
    painter.drawText(textLeft(), baseline, isPlain(text) ? text : leftToRight + text);
}

/// Shows that there is more, and where; the wheel is what moves it.
void InputView::paintThumb(QPainter &painter) const {
    const double whole = contentHeight(width());
    if (whole <= height()) {
        return;
    }
    const double track = height() - 2 * padding;
    const double length = std::max(smallestThumb, track * height() / whole);
    const double top = padding + (track - length) * m_offset / (whole - height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::white(0.4));
    painter.drawRoundedRect(QRectF(width() - padding / 2.0 - thumbWidth, top, thumbWidth, length),
                            thumbWidth / 2, thumbWidth / 2);
}

void InputView::scrollTo(int offset) {
    const int furthest = std::max(0, contentHeight(width()) - height());
    const int next = std::clamp(offset, 0, furthest);
    if (next != m_offset) {
        m_offset = next;
        update();
    }
}

/// The list around it does not move as long as there is something to scroll in here, at the ends
/// neither: somebody reads.
void InputView::wheelEvent(QWheelEvent *event) {
    if (contentHeight(width()) <= height()) {
        event->ignore();
        return;
    }
    const QPoint pixels = event->pixelDelta();
    const int notch = linesOfANotch * fontMetrics().lineSpacing();
    scrollTo(m_offset - (pixels.isNull() ? event->angleDelta().y() * notch / 120 : pixels.y()));
    event->accept();
}

void InputView::resizeEvent(QResizeEvent *) {
    scrollTo(m_offset);
}

} // namespace morvane
