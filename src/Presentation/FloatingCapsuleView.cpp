#include "Presentation/FloatingCapsuleView.h"

#include "Presentation/Colors.h"
#include "Presentation/CompactView.h"
#include "Presentation/ExpandedView.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace morvane {

namespace {

constexpr double expandedRadius = 18;
constexpr double compactRadius = 14;

/// Square at the top, where the tab hangs; round at the bottom.
QPainterPath tabPath(const QRectF &tab, double radius) {
    QPainterPath path(tab.topLeft());
    const double corner = std::min({radius, tab.width() / 2, tab.height()});
    path.lineTo(tab.topRight());
    path.lineTo(tab.right(), tab.bottom() - corner);
    path.arcTo(tab.right() - 2 * corner, tab.bottom() - 2 * corner, 2 * corner, 2 * corner, 0, -90);
    path.lineTo(tab.left() + corner, tab.bottom());
    path.arcTo(tab.left(), tab.bottom() - 2 * corner, 2 * corner, 2 * corner, -90, -90);
    path.closeSubpath();
    return path;
}

} // namespace

FloatingCapsuleView::FloatingCapsuleView(const PanelContext &context)
    : m_clip(new QWidget(this)), m_compact(new CompactView(context, m_clip)),
      m_expanded(new ExpandedView(context, m_clip)) {
    m_expanded->hide();
    connect(m_compact, &CompactView::contentResized, this, &FloatingCapsuleView::contentResized);
    connect(m_expanded, &ExpandedView::contentResized, this, &FloatingCapsuleView::contentResized);
}

void FloatingCapsuleView::setContentHeightBudget(int budget) {
    m_expanded->setContentHeightBudget(budget);
}

void FloatingCapsuleView::setExpanded(bool expanded) {
    if (expanded == m_isExpanded) {
        return;
    }
    m_isExpanded = expanded;
    refresh();
    m_compact->setVisible(!expanded);
    m_expanded->setVisible(expanded);
}

void FloatingCapsuleView::refresh() {
    if (m_isExpanded) {
        m_expanded->refresh();
    } else {
        m_compact->refresh();
    }
}

QSize FloatingCapsuleView::fittingSize() const {
    return m_isExpanded ? m_expanded->sizeHint() : m_compact->sizeHint();
}

void FloatingCapsuleView::setTab(const QRect &present, const QRect &target) {
    const QRect content = target.translated(-present.topLeft());
    m_clip->setGeometry(present);
    m_compact->setGeometry(content);
    m_expanded->setGeometry(content);
    if (present != m_tab) {
        m_tab = present;
        update();
    }
}

QRegion FloatingCapsuleView::shape(const QRect &tab) const {
    return QRegion(tabPath(tab, cornerRadius()).toFillPolygon().toPolygon());
}

double FloatingCapsuleView::cornerRadius() const {
    return m_isExpanded ? expandedRadius : compactRadius;
}

void FloatingCapsuleView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(tabPath(m_tab, cornerRadius()), Colors::capsuleFill);
    const QRectF edge = QRectF(m_tab).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.strokePath(tabPath(edge, cornerRadius()), QPen(Colors::capsuleEdge, 1));
}

} // namespace morvane
