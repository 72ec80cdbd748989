#include "Presentation/Panel/UsageMilestoneBadge.h"

#include "Presentation/Panel/UsageMilestoneStyle.h"
#include "Presentation/Style/ReadAsText.h"
#include "Presentation/Style/SystemImage.h"
#include "Presentation/Style/Typography.h"

#include <QPainter>

namespace morvane {

namespace {

constexpr QMargins regularPadding(7, 3, 7, 3);
constexpr QMargins compactPadding(5, 2, 5, 2);
constexpr int regularText = 9;
constexpr int compactText = 8;
constexpr int bellGap = 3;
constexpr double badgeFill = 0.14;
constexpr double badgeEdgeOpacity = 0.34;
constexpr double badgeEdge = 1;

} // namespace

UsageMilestoneBadge::UsageMilestoneBadge(Size size, QWidget *parent)
    : QWidget(parent), m_padding(size == Size::compact ? compactPadding : regularPadding) {
    setFont(Typography::text(size == Size::compact ? compactText : regularText, QFont::Bold));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    readAsText(*this);
    hide();
}

void UsageMilestoneBadge::setMilestone(const std::optional<UsageMilestone> &milestone) {
    setVisible(milestone.has_value());
    if (!milestone) {
        return;
    }
    m_milestone = *milestone;
    const int percent = m_milestone.percent();
    switch (m_milestone.kind) {
    case UsageWindowKind::session:
        setAccessibleName(tr("Claude 5-hour session usage reached %1 percent").arg(percent));
        break;
    case UsageWindowKind::weekly:
        setAccessibleName(tr("Claude weekly usage reached %1 percent").arg(percent));
        break;
    case UsageWindowKind::model:
        setAccessibleName(tr("Claude model-family usage reached %1 percent").arg(percent));
        break;
    }
    updateGeometry();
    update();
}

QString UsageMilestoneBadge::percent() const {
    return tr("%1%").arg(m_milestone.percent());
}

QSize UsageMilestoneBadge::sizeHint() const {
    const int image = font().pixelSize();
    const int text = fontMetrics().horizontalAdvance(percent());
    return QSize(image + bellGap + text, fontMetrics().height()).grownBy(m_padding);
}

void UsageMilestoneBadge::paintEvent(QPaintEvent *) {
    const QColor color = UsageMilestoneStyle::color(m_milestone.threshold);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = badgeEdge / 2;
    const QRectF capsule = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.setBrush(Colors::faded(color, badgeFill));
    painter.setPen(QPen(Colors::faded(color, badgeEdgeOpacity), badgeEdge));
    painter.drawRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);

    const QRectF content = rect().marginsRemoved(m_padding);
    const double side = font().pixelSize();
    morvane::paint(painter, SystemImage::bellFill,
                   {content.left(), content.center().y() - side / 2, side, side}, color);
    painter.setPen(color);
    painter.drawText(content, Qt::AlignVCenter | Qt::AlignRight, percent());
}

} // namespace morvane

#include "moc_UsageMilestoneBadge.cpp"
