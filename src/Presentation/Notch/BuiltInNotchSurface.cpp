#include "Presentation/Notch/BuiltInNotchSurface.h"

#include "Presentation/Notch/NotchGeometry.h"
#include "Presentation/Notch/NotchVeil.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/CompactInfoView.h"
#include "Presentation/Panel/CompactStatusView.h"
#include "Presentation/Panel/ExpandedView.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/Spring.h"

#include <QGridLayout>
#include <QPainter>

#include <cmath>

namespace morvane {

namespace {

constexpr double edgeWidth = 1;
constexpr NotchBridgeShape compactShape{6, 14};
constexpr NotchBridgeShape expandedShape{15, 20};
constexpr Spring openingSpring{Seconds(0.34), 0.86};
constexpr Spring closingSpring{Seconds(0.28), 1};
constexpr FadingContent::Timing compactTiming{Seconds(0.08), Seconds(0.16), Seconds(0.1)};
constexpr FadingContent::Timing expandedTiming{Seconds(0.06), Seconds(0.2), Seconds(0.12)};

/// In the middle of a row of the given width; whole points, so that text stays sharp.
QRect centered(int width, int top, const QSize &size) {
    return {QPoint((width - size.width()) / 2, top), size};
}

/// The largest rectangle of whole points in a shell's body, inside its edge line.
QRect insideOfEdge(const QRectF &frame, double flare) {
    const double inset = flare + edgeWidth;
    return {QPoint(static_cast<int>(std::ceil(frame.left() + inset)), 0),
            QPoint(static_cast<int>(std::floor(frame.right() - inset)) - 1,
                   static_cast<int>(std::floor(frame.bottom() - edgeWidth)) - 1)};
}

} // namespace

BuiltInNotchSurface::BuiltInNotchSurface(const PanelContext &context)
    : PanelSurface(context.scheduler), m_growth(context.scheduler), m_clip(new QWidget(this)),
      m_compact(new QWidget(m_clip)), m_status(new CompactStatusView(context, m_compact)),
      m_info(new CompactInfoView(context, m_status->mascot(), m_compact)),
      m_expanded(new ExpandedView(context, m_clip)),
      m_compactFade(*m_compact, compactTiming, context.scheduler, [this] { m_veil->refresh(); }),
      m_expandedFade(*m_expanded, expandedTiming, context.scheduler, [this] { m_veil->refresh(); }),
      m_veil(new NotchVeil({&m_compactFade, &m_expandedFade}, m_clip)) {
    auto *row = new QGridLayout(m_compact);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_status, 0, 0, Qt::AlignCenter);
    row->addWidget(m_info, 0, 2, Qt::AlignCenter);
    row->setColumnStretch(0, 1);
    row->setColumnStretch(2, 1);
    m_compactFade.setShown(true, Motion::atOnce);
    connect(m_info, &CompactInfoView::timeChanged, this, [this] { activateLayouts(*m_compact); });
    connect(m_expanded, &ExpandedView::contentResized, this, &BuiltInNotchSurface::contentResized);
}

void BuiltInNotchSurface::setNotch(const QSize &notch, const QSize &contentBudget) {
    m_notch = notch;
    static_cast<QGridLayout *>(m_compact->layout())->setColumnMinimumWidth(1, notch.width());
    m_expanded->setContentHeightBudget(contentBudget.height());
    m_expanded->setContentWidthBudget(contentBudget.width());
}

void BuiltInNotchSurface::setMode(Mode mode, Motion motion) {
    if (mode == m_mode) {
        return;
    }
    m_mode = mode;
    refresh();
    m_compactFade.setShown(!isExpanded(), motion);
    m_expandedFade.setShown(isExpanded(), motion);
    layOut(motion);
}

void BuiltInNotchSurface::refresh() {
    if (isExpanded()) {
        m_expanded->refresh();
    } else {
        m_status->refresh();
        m_info->refresh();
        activateLayouts(*m_compact);
    }
}

void BuiltInNotchSurface::layOut(Motion motion) {
    if (isExpanded()) {
        m_contentSize = m_expanded->sizeHint();
    }
    retargetShell(motion);
    placeShell();
}

/// A shell that is still moving goes to the new size from where it is.
void BuiltInNotchSurface::retargetShell(Motion motion) {
    const NotchShell target =
        isExpanded()
            ? NotchShell{NotchGeometry::expandedShellSize(m_notch, m_contentSize), expandedShape}
            : NotchShell{NotchGeometry::compactShellSize(m_notch), compactShape};
    if (target.size == m_target.size) {
        return;
    }
    m_target = target;
    if (motion == Motion::atOnce) {
        m_growth.stop();
        m_shell = target;
        return;
    }
    const Spring &spring = isExpanded() ? openingSpring : closingSpring;
    const Seconds length = spring.settlingTime();
    m_growth.start(length, [this, spring, length, from = m_shell](double share) {
        m_shell = NotchShell::between(from, m_target, spring.at(share * length));
        placeShell();
    });
}

/// The contents are laid out at their final place, and the growing shell uncovers them.
void BuiltInNotchSurface::placeShell() {
    const QRectF frame = m_shell.frame(width());
    const QRect body = insideOfEdge(frame, m_shell.shape.topCornerRadius);
    m_clip->setGeometry(body);
    const auto place = [&](QWidget &content, int top, const QSize &size) {
        content.setGeometry(centered(width(), top, size).translated(-body.topLeft()));
    };
    place(*m_compact, 0, NotchGeometry::compactShellSize(m_notch));
    place(*m_expanded, m_notch.height(), m_contentSize);
    m_veil->setShell(m_shell.shape.path(frame.translated(-body.topLeft())));
    // Updates only if the shell has changed, because that repaints all the content on it.
    if (m_shell != m_drawnShell) {
        update(m_drawn.united(visibleRect()));
        m_drawnShell = m_shell;
        m_drawn = visibleRect();
    }
}

void BuiltInNotchSurface::takeFocus() {
    m_expanded->takeFocus();
}

std::optional<CompletedRecord> BuiltInNotchSurface::recordAt(int digit) const {
    return isExpanded() ? m_expanded->recordAt(digit) : std::nullopt;
}

bool BuiltInNotchSurface::hasBeenRead(const QString &sessionID) const {
    return isExpanded() && m_expanded->hasBeenRead(sessionID);
}

QPainterPath BuiltInNotchSurface::shape() const {
    return m_target.shape.path(m_target.frame(width()));
}

QRect BuiltInNotchSurface::visibleRect() const {
    return m_shell.frame(width()).toAlignedRect();
}

void BuiltInNotchSurface::resizeEvent(QResizeEvent *) {
    placeShell();
}

void BuiltInNotchSurface::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = m_shell.frame(width());
    painter.fillPath(m_shell.shape.path(frame), Colors::notchFill);
    // The top edge lies outside the widget: at the screen's edge the shell needs no line.
    const QRectF edge = frame.adjusted(edgeWidth / 2, -edgeWidth, -edgeWidth / 2, -edgeWidth / 2);
    painter.strokePath(m_shell.shape.path(edge), QPen(Colors::capsuleEdge, edgeWidth));
}

} // namespace morvane

#include "moc_BuiltInNotchSurface.cpp"
