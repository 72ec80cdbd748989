#include "Presentation/Panel/RefreshButton.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/SystemImage.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr int refreshSide = 22;
constexpr double arrowSide = 11;
constexpr double refreshRadius = 6;
constexpr double refreshHover = 0.12;
constexpr double refreshPressed = 0.2;

} // namespace

RefreshButton::RefreshButton(QWidget *parent) : PanelButton(parent) {
    setFixedSize(refreshSide, refreshSide);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(tr("Refresh usage now"));
    setHelpText(*this, tr("Refresh usage now"));
}

void RefreshButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double opacity = isDown() ? refreshPressed : underMouse() ? refreshHover : 0;
    painter.setBrush(Colors::white(isEnabled() ? opacity : 0));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), refreshRadius, refreshRadius);
    const double inset = (refreshSide - arrowSide) / 2;
    const QColor color = Colors::faded(Colors::secondaryText, isEnabled() ? 1 : Colors::waiting);
    morvane::paint(painter, SystemImage::arrowClockwise, {inset, inset, arrowSide, arrowSide},
                   color);
    paintFocus(painter, refreshRadius);
}

} // namespace morvane

#include "moc_RefreshButton.cpp"
