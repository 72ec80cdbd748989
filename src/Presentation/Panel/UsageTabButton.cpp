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
    : PanelButton(parent) {
    setText(title);
    setAccessibleName(name);
    setFont(Typography::text(Typography::secondarySize, QFont::Medium));
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize UsageTabButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(text()) + 2 * tabPadding, tabHeight};
}

void UsageTabButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked()    ? selectedGround
                     : underMouse() ? Colors::rowHover
                                    : Colors::white(0));
    painter.drawRoundedRect(rect(), tabRadius, tabRadius);
    painter.setPen(isChecked() ? Colors::primaryText : Colors::secondaryText);
    painter.drawText(rect(), Qt::AlignCenter, text());
    paintFocus(painter, tabRadius);
}

} // namespace morvane

#include "moc_UsageTabButton.cpp"
