#include "Presentation/Panel/InputView.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"
#include "Presentation/Style/ReadAsText.h"
#include "Presentation/Style/Typography.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace morvane {

namespace {

using Line = ReadableInput::Line;
using Sign = ReadableInput::Sign;

constexpr int padding = 7;
constexpr int gutter = 14; ///< for the signs
constexpr int textLeft = padding + gutter;
constexpr int linesOfANotch = 3;
constexpr double groundRadius = 6;
constexpr double changedGround = 0.1;
constexpr double thumbWidth = 3;
constexpr double smallestThumb = 16;

/// An override that lays out what follows from left to right, in the order in which it was sent.
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
    case Sign::prose:
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
    case Sign::aside:
        return u'\u00b7';
    case Sign::plain:
    case Sign::prose:
        break;
    }
    return std::nullopt;
}

constexpr QChar continuation(u'\u21aa');

} // namespace

InputView::InputView(QWidget *parent)
    : QWidget(parent), m_rows(Typography::code(Typography::secondarySize)) {
    setFont(Typography::code(Typography::secondarySize));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    readAsText(*this);
    QAccessible::installActivationObserver(this);
}

InputView::~InputView() {
    QAccessible::removeActivationObserver(this);
}

QString InputView::spoken(const QList<Line> &lines) {
    QStringList result;
    for (const Line &line : lines) {
        const auto sign = mark(line.sign);
        result.append(sign ? *sign + QStringLiteral(" ") + line.text : line.text);
    }
    return result.join(u'\n');
}

void InputView::setLines(const QList<Line> &lines) {
    if (lines == m_rows.lines()) {
        return;
    }
    m_rows.setLines(lines);
    m_offset = 0;
    setAccessibleName(spoken(lines));
    updateGeometry();
    updateFocusPolicy();
    update();
}

void InputView::setHeightLimit(int limit) {
    if (limit != m_heightLimit) {
        m_heightLimit = limit;
        updateGeometry();
    }
}

const QList<InputRows::Row> &InputView::rows(int width) const {
    return m_rows.at(width - textLeft - padding);
}

int InputView::contentHeight(int width) const {
    return static_cast<int>(rows(width).size()) * fontMetrics().lineSpacing() + 2 * padding;
}

/// Limited to whole lines, so that the last one isn't cut in half.
int InputView::heightForWidth(int width) const {
    const int line = fontMetrics().lineSpacing();
    const int fitting = std::max(1, (m_heightLimit - 2 * padding) / line) * line + 2 * padding;
    return std::min(contentHeight(width), fitting);
}

/// The strip decides the width, and the width decides the height.
QSize InputView::sizeHint() const {
    return {textLeft + padding, fontMetrics().lineSpacing() + 2 * padding};
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
    const QList<InputRows::Row> &all = rows(width());
    const QRect dirty = event->rect();
    const auto first = std::max(0, (dirty.top() - padding + m_offset) / lineHeight);
    const auto end = (dirty.bottom() - padding + m_offset) / lineHeight + 1;
    for (qsizetype row = first; row < std::min<qsizetype>(end, all.size()); ++row) {
        paint(painter, all[row], padding - m_offset + static_cast<int>(row) * lineHeight);
    }
    paintThumb(painter);
    if (hasFocus()) {
        painter.setClipping(false);
        paintFocusRing(painter, rect(), groundRadius);
    }
}

void InputView::paint(QPainter &painter, const InputRows::Row &row, int top) const {
    const Line &line = m_rows.lines()[row.line];
    const QColor color = colorOf(line.sign);
    const int baseline = top + fontMetrics().ascent();
    if (line.sign == Sign::removed || line.sign == Sign::added) {
        painter.fillRect(0, top, width(), fontMetrics().lineSpacing(),
                         Colors::faded(color, changedGround));
    }
    const bool goesOn = row.begin > 0;
    if (const auto sign = goesOn ? std::optional(continuation) : mark(line.sign)) {
        painter.setPen(goesOn ? Colors::tertiaryText : color);
        painter.drawText(padding, baseline, QString(*sign));
    }
    painter.setPen(color);
    if (line.sign == Sign::prose) {
        paintWords(painter, row, baseline);
    } else {
        paintCells(painter, QStringView(line.text).sliced(row.begin, row.length), baseline);
    }
}

/// Draws each cell by itself, so that its neighbours neither move nor reshape a letter.
void InputView::paintCells(QPainter &painter, QStringView text, int baseline) const {
    double column = 0;
    while (!text.isEmpty()) {
        const QString cell = text.first(InputRows::cellLength(text)).toString();
        if (cell[0] != u' ') {
            painter.drawText(QPointF(textLeft + column * m_rows.columnWidth(), baseline),
                             leftToRight + cell);
        }
        column += static_cast<double>(m_rows.columnsOf(cell));
        text = text.sliced(cell.size());
    }
}

void InputView::paintWords(QPainter &painter, const InputRows::Row &row, int baseline) const {
    const QString &line = m_rows.lines()[row.line].text;
    const QString words = line.mid(row.begin, row.length);
    double left = textLeft;
    if (line.isRightToLeft()) {
        left = width() - padding - QFontMetricsF(font()).horizontalAdvance(words);
        painter.setLayoutDirection(Qt::RightToLeft);
    }
    painter.drawText(QPointF(left, baseline), words);
    painter.setLayoutDirection(Qt::LeftToRight);
}

/// Shows that there is more, and where; it can't be dragged.
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

bool InputView::isCut() const {
    return contentHeight(width()) > height();
}

/// False if it is already there, as at either end.
bool InputView::scrollTo(int offset) {
    const int furthest = std::max(0, contentHeight(width()) - height());
    const int next = std::clamp(offset, 0, furthest);
    if (next == m_offset) {
        return false;
    }
    m_offset = next;
    update();
    return true;
}

void InputView::accessibilityActiveChanged(bool active) {
    m_isScreenReaderActive = active;
    updateFocusPolicy();
}

/// The keys skip an input that is in sight as a whole, unless a screen reader is active.
void InputView::updateFocusPolicy() {
    setFocusPolicy(isCut() || m_isScreenReaderActive ? Qt::TabFocus : Qt::NoFocus);
}

/// At either end the arrow keys lead on to what is above or below.
void InputView::keyPressEvent(QKeyEvent *event) {
    const int line = fontMetrics().lineSpacing();
    const int page = height() - 2 * padding - line;
    bool isDone = true;
    switch (event->key()) {
    case Qt::Key_Up:
        isDone = scrollTo(m_offset - line);
        break;
    case Qt::Key_Down:
        isDone = scrollTo(m_offset + line);
        break;
    case Qt::Key_PageUp:
        scrollTo(m_offset - page);
        break;
    case Qt::Key_PageDown:
    case Qt::Key_Space:
        scrollTo(m_offset + page);
        break;
    case Qt::Key_Home:
        scrollTo(0);
        break;
    case Qt::Key_End:
        scrollTo(contentHeight(width()));
        break;
    default:
        isDone = false;
    }
    event->setAccepted(isDone);
}

/// While this view can scroll, the wheel doesn't scroll the list around it, not even at either end,
/// because somebody is reading.
void InputView::wheelEvent(QWheelEvent *event) {
    if (!isCut()) {
        event->ignore();
        return;
    }
    scrollTo(m_offset - m_wheel.take(*event, linesOfANotch * fontMetrics().lineSpacing()));
    event->accept();
}

void InputView::resizeEvent(QResizeEvent *) {
    scrollTo(m_offset);
    updateFocusPolicy();
}

} // namespace morvane

#include "moc_InputView.cpp"
