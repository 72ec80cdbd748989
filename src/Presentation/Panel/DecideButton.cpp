#include "Presentation/Panel/DecideButton.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr int buttonHeight = 26;
constexpr int buttonPadding = 14;
constexpr int quietHeight = 20;
constexpr int quietPadding = 8;
constexpr int digitGap = 7;
constexpr int imageSide = 9;
constexpr int imageGap = 5;
constexpr double decideRadius = 7;
constexpr double hoverOpacity = 0.24;
constexpr double pressedOpacity = 0.36;

} // namespace

DecideButton::DecideButton(const QString &title, const QColor &tint, QWidget *parent)
    : PanelButton(parent), m_tint(tint) {
    setTitle(title);
    setFont(Typography::text(Typography::bodySize, QFont::DemiBold));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DecideButton::setTitle(const QString &title) {
    setText(BoundedText::of(title, BoundedText::lineLength));
    setShortcut({}); // an ampersand in a program's name is no mnemonic
    setAccessibleName(text());
    updateGeometry();
}

void DecideButton::setQuiet() {
    m_isQuiet = true;
    setFont(Typography::text(Typography::secondarySize));
}

void DecideButton::setShortcutDigit(std::optional<int> digit) {
    if (digit != m_digit) {
        m_digit = digit;
        updateGeometry();
        update();
    }
}

int DecideButton::digitSpace() const {
    return m_digit ? fontMetrics().horizontalAdvance(QString::number(*m_digit)) + digitGap : 0;
}

QSize DecideButton::sizeHint() const {
    int content = fontMetrics().horizontalAdvance(text()) + digitSpace();
    content += m_leadingImage ? imageSide : 0;
    content += m_trailingImage ? imageSide + imageGap : 0;
    return m_isQuiet ? QSize(content + 2 * quietPadding, quietHeight)
                     : QSize(content + 2 * buttonPadding, buttonHeight);
}

void DecideButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : Colors::waiting);
    const double opacity = isDown()       ? pressedOpacity
                           : underMouse() ? hoverOpacity
                                          : Colors::tintedGround;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Colors::faded(m_tint, opacity));
    painter.drawRoundedRect(rect(), decideRadius, decideRadius);
    const int padding = m_isQuiet ? quietPadding : buttonPadding;
    QRect content = rect().adjusted(padding, 0, -padding, 0);
    if (m_digit) {
        painter.setPen(Colors::faded(m_tint, Colors::shortcut));
        painter.drawText(content, Qt::AlignVCenter | Qt::AlignLeft, QString::number(*m_digit));
        content.setLeft(content.left() + digitSpace());
    }
    QRectF picture(content.left(), (height() - imageSide) / 2.0, imageSide, imageSide);
    if (m_leadingImage) {
        morvane::paint(painter, *m_leadingImage, picture, m_tint);
        content.setLeft(content.left() + imageSide);
    }
    painter.setPen(m_tint);
    painter.drawText(content, Qt::AlignVCenter | Qt::AlignLeft, text());
    if (m_trailingImage) {
        picture.moveRight(content.right() + 1);
        morvane::paint(painter, *m_trailingImage, picture, m_tint);
    }
    paintFocus(painter, decideRadius);
}

} // namespace morvane

#include "moc_DecideButton.cpp"
