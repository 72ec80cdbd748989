#include "Presentation/Windows/Pill.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

namespace morvane {

Pill::Pill(QWidget *parent) : QLabel(parent) {
    setFont(Typography::text(Typography::bodySize));
    setTextFormat(Qt::PlainText);
    setContentsMargins(14, 7, 14, 7);
}

void Pill::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::hairline);
    painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    painter.end();
    QLabel::paintEvent(event);
}

} // namespace morvane

#include "moc_Pill.cpp"
