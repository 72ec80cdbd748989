#include "Presentation/Style/Badge.h"

#include "Core/Ground/VisibleText.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

#include <algorithm>

namespace morvane {

namespace {

constexpr int badgeHeight = 15;
constexpr int maxTextWidth = 180;
constexpr double pictureSide = 8;
constexpr double badgeRadius = 4;

} // namespace

Badge::Badge(QWidget *parent) : QLabel(parent) {
    setFont(Typography::text(Typography::badgeSize, QFont::Medium));
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
}

void Badge::setContent(const QString &text, const QColor &tint, const QString &help) {
    m_tint = tint;
    setText(VisibleText::name(text));
    setAccessibleName(this->text());
    setHelpText(*this, help);
    setVisible(!text.isEmpty());
    update();
}

QSize Badge::sizeHint() const {
    const int textWidth = std::min(fontMetrics().horizontalAdvance(text()) + 1, maxTextWidth);
    return {textWidth + 2 * padding() + pictureSpace(), badgeHeight};
}

void Badge::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_picture) {
        const double top = (height() - pictureSide) / 2;
        m_picture(painter, QRectF(0, top, pictureSide, pictureSide), m_tint);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Colors::faded(m_tint, Colors::tintedGround));
        painter.drawRoundedRect(rect(), badgeRadius, badgeRadius);
    }
    const QRect inner = rect().adjusted(padding() + pictureSpace(), 0, -padding(), 0);
    painter.setPen(m_tint);
    painter.drawText(inner, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(text(), Qt::ElideRight, inner.width()));
}

} // namespace morvane

#include "moc_Badge.cpp"
