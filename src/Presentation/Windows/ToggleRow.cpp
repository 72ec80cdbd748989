#include "Presentation/Windows/ToggleRow.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

#include <algorithm>

namespace morvane {

namespace {

constexpr QSize switchSize(34, 20);
constexpr int space = 16; ///< between the sentence and the switch
constexpr int textFlags =
    Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;
constexpr int leastTextWidth = 120;

} // namespace

ToggleRow::ToggleRow(const QString &text, QWidget *parent) : QCheckBox(text, parent) {
    setFont(Typography::text(Typography::nameSize));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QRect ToggleRow::textFrame(int width) const {
    const QRect room(0, 0, std::max(width - switchSize.width() - space, leastTextWidth), 10'000);
    return fontMetrics().boundingRect(room, textFlags & ~Qt::AlignVCenter, text());
}

int ToggleRow::heightForWidth(int width) const {
    return std::max(textFrame(width).height(), switchSize.height());
}

QSize ToggleRow::sizeHint() const {
    const int width = fontMetrics().horizontalAdvance(text()) + space + switchSize.width();
    return {width, std::max(fontMetrics().height(), switchSize.height())};
}

QSize ToggleRow::minimumSizeHint() const {
    return {leastTextWidth + space + switchSize.width(), switchSize.height()};
}

void ToggleRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setPen(isEnabled() ? Colors::primaryText : Colors::tertiaryText);
    painter.drawText(rect().adjusted(0, 0, -switchSize.width() - space, 0), textFlags, text());
    paintSwitch(painter);
}

void ToggleRow::paintSwitch(QPainter &painter) const {
    constexpr double knobMargin = 2;
    QRectF ground(QPointF(), switchSize);
    ground.moveTopLeft(
        {double(width() - switchSize.width()), (height() - switchSize.height()) / 2.0});
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Colors::waiting);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? Colors::switchOn : Colors::white(isDown() ? 0.3 : 0.2));
    painter.drawRoundedRect(ground, ground.height() / 2, ground.height() / 2);
    if (hasFocus()) {
        paintFocusRing(painter, ground, ground.height() / 2, Colors::primaryText);
        painter.setPen(Qt::NoPen);
    }
    const double side = ground.height() - 2 * knobMargin;
    const double left =
        isChecked() ? ground.right() - knobMargin - side : ground.left() + knobMargin;
    painter.setBrush(Colors::primaryText);
    painter.drawEllipse(QRectF(left, ground.top() + knobMargin, side, side));
}

} // namespace morvane

#include "moc_ToggleRow.cpp"
