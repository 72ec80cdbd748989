#include "Presentation/Floating/FloatingCapsuleView.h"

#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/CompactView.h"
#include "Presentation/Panel/ExpandedView.h"
#include "Presentation/Style/Colors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace morvane {

namespace {

constexpr double expandedRadius = 18;
constexpr double compactRadius = 14;

/// The sides and the bottom of a tab, from the upper left to the upper right: square at the top,
/// where it hangs, and round at the bottom.
QPainterPath tabSides(const QRectF &tab, double radius) {
    QPainterPath path(tab.topLeft());
    const double corner = std::min({radius, tab.width() / 2, tab.height()});
    const double lowerTop = tab.bottom() - 2 * corner;
    path.lineTo(tab.left(), tab.bottom() - corner);
    path.arcTo(tab.left(), lowerTop, 2 * corner, 2 * corner, 180, 90);
    path.lineTo(tab.right() - corner, tab.bottom());
    path.arcTo(tab.right() - 2 * corner, lowerTop, 2 * corner, 2 * corner, 270, 90);
    path.lineTo(tab.topRight());
    return path;
}

QPainterPath tabPath(const QRectF &tab, double radius) {
    QPainterPath path = tabSides(tab, radius);
    path.closeSubpath();
    return path;
}

/// Moves the edges to whole device pixels; they would be blurred at a fractional ratio.
QRectF snapped(const QRectF &rect, double ratio) {
    const auto snap = [ratio](double value) { return std::round(value * ratio) / ratio; };
    return {QPointF(snap(rect.left()), snap(rect.top())),
            QPointF(snap(rect.right()), snap(rect.bottom()))};
}

} // namespace

FloatingCapsuleView::FloatingCapsuleView(const PanelContext &context)
    : PanelSurface(context.scheduler), m_context(context), m_clip(new QWidget(this)),
      m_compact(new CompactView(context, m_clip)) {
    connect(m_compact, &CompactView::contentResized, this, &FloatingCapsuleView::contentResized);
}

void FloatingCapsuleView::makeExpanded() {
    m_expanded = new ExpandedView(m_context, m_clip);
    setContentBudget(m_contentBudget);
    connect(m_expanded, &ExpandedView::contentResized, this, &FloatingCapsuleView::contentResized);
}

void FloatingCapsuleView::setContentBudget(const QSize &budget) {
    m_contentBudget = budget;
    if (m_expanded) {
        m_expanded->setContentHeightBudget(budget.height());
        m_expanded->setContentWidthBudget(budget.width());
    }
}

void FloatingCapsuleView::setExpanded(bool expanded) {
    if (expanded == m_isExpanded) {
        return;
    }
    if (!m_expanded) {
        makeExpanded();
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

void FloatingCapsuleView::takeFocus() {
    if (m_isExpanded) {
        m_expanded->takeFocus();
    }
}

std::optional<CompletedRecord> FloatingCapsuleView::recordAt(int digit) const {
    return m_isExpanded ? m_expanded->recordAt(digit) : std::nullopt;
}

bool FloatingCapsuleView::hasBeenRead(const QString &sessionID) const {
    return m_isExpanded && m_expanded->hasBeenRead(sessionID);
}

QSize FloatingCapsuleView::fittingSize() const {
    return m_isExpanded ? m_expanded->sizeHint() : m_compact->sizeHint();
}

void FloatingCapsuleView::setTab(const QRect &present, const QRect &target) {
    const QRect content = target.translated(-present.topLeft());
    m_clip->setGeometry(present);
    m_compact->setGeometry(content);
    if (m_expanded) {
        m_expanded->setGeometry(content);
    }
    if (present != m_tab) {
        m_tab = present;
        update();
    }
}

QPainterPath FloatingCapsuleView::shape(const QRect &tab) const {
    return tabPath(tab, cornerRadius());
}

double FloatingCapsuleView::cornerRadius() const {
    return m_isExpanded ? expandedRadius : compactRadius;
}

/// The top has no edge line, because the tab hangs from the edge of the screen.
void FloatingCapsuleView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double ratio = devicePixelRatioF();
    const QRectF tab = snapped(m_tab, ratio);
    painter.fillPath(tabPath(tab, cornerRadius()), Colors::capsuleFill);
    const double thickness = std::max(1.0, std::floor(ratio)) / ratio;
    const double inset = thickness / 2;
    const QRectF edge = tab.adjusted(inset, 0, -inset, -inset);
    painter.strokePath(tabSides(edge, cornerRadius() - inset),
                       QPen(Colors::capsuleEdge, thickness, Qt::SolidLine, Qt::FlatCap));
}

} // namespace morvane

#include "moc_FloatingCapsuleView.cpp"
