#include "Presentation/Panel/AlertsNote.h"

#include "Core/Usage/UsageAlerts.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/ReadAsText.h"
#include "Presentation/Style/SystemImage.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr int textSize = 9;
constexpr double noteImageSide = 8;
constexpr int noteImageSpace = 13;

} // namespace

AlertsNote::AlertsNote(QWidget *parent) : QWidget(parent) {
    setFont(Typography::text(textSize));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    readAsText(*this);
    setAccessibleName(tr("Claude working-session alerts at %1 percent")
                          .arg(UsageAlerts::percents(QStringLiteral(", "))));
}

QSize AlertsNote::sizeHint() const {
    return {noteImageSpace, fontMetrics().height()};
}

void AlertsNote::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    morvane::paint(painter, SystemImage::bellFill,
                   {0, (height() - noteImageSide) / 2, noteImageSide, noteImageSide},
                   Colors::tertiaryText);
    painter.setPen(Colors::tertiaryText);
    painter.drawText(rect().adjusted(noteImageSpace, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     tr("working-session chimes"));
    painter.setFont(Typography::text(textSize, QFont::DemiBold));
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignRight,
                     UsageAlerts::percents(QStringLiteral("  ·  ")));
}

} // namespace morvane

#include "moc_AlertsNote.cpp"
