#include "Presentation/Panel/UsageTabButton.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr int tabHeight = 22;
constexpr int tabPadding = 9;
constexpr double tabRadius = 6;
constexpr QColor selectedGround = Colors::white(0.12);

} // namespace

UsageTabButton::UsageTabButton(const QString &title, const QString &name, QWidget *parent)
    : QAbstractButton(parent) {
    setText(title);
    setAccessibleName(name);
    setFont(Typography::text(Typography::secondarySize, QFont::Medium));
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UsageTabButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * tabPadding, tabHeight};
}

void UsageTabButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(hasFocus() ? QPen(Colors::primaryText, 1.5) : QPen(Qt::NoPen));
    painter.setBrush(isChecked()    ? selectedGround
                     : underMouse() ? Colors::rowHover
                                    : Colors::white(0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), tabRadius,
                            tabRadius);
    painter.setPen(isChecked() ? Colors::primaryText : Colors::secondaryText);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace morvane

#include "moc_UsageTabButton.cpp"
