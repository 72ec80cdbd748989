#include "Presentation/Panel/PencilButton.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/SystemImage.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr int buttonSide = 20;
constexpr double pencilSide = 10;
constexpr double pencilRadius = 5;

} // namespace

PencilButton::PencilButton(const QWidget &row, QWidget *parent) : PanelButton(parent), m_row(row) {
    setFixedSize(buttonSide, buttonSide);
    setCursor(Qt::PointingHandCursor);
    setHelpText(*this, tr("Rename this session"));
}

void PencilButton::paintEvent(QPaintEvent *) {
    if (!m_row.underMouse() && !containsFocus(m_row)) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Colors::white(isDown() ? 0.2 : 0.12));
        painter.drawRoundedRect(rect(), pencilRadius, pencilRadius);
    }
    const double inset = (buttonSide - pencilSide) / 2;
    morvane::paint(painter, SystemImage::pencil, QRectF(inset, inset, pencilSide, pencilSide),
                   underMouse() || hasFocus() ? Colors::primaryText : Colors::secondaryText);
    paintFocus(painter, pencilRadius);
}

} // namespace morvane

#include "moc_PencilButton.cpp"
