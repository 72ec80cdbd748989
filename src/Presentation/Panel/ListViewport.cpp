#include "Presentation/Panel/ListViewport.h"

#include "Presentation/Panel/EdgeFade.h"
#include "Presentation/Panel/RowList.h"

#include <algorithm>

namespace morvane {

namespace {

constexpr int fadeHeight = 28;
constexpr int notchHeight = 48;

} // namespace

ListViewport::ListViewport(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent), m_rows(new RowList(scheduler, this)),
      m_topFade(new EdgeFade(EdgeFade::Edge::top, this)),
      m_bottomFade(new EdgeFade(EdgeFade::Edge::bottom, this)) {
    connect(m_rows, &RowList::heightsChanged, this, &ListViewport::heightsChanged);
}

int ListViewport::contentHeight(int width, int limit) {
    return m_rows->layOut(width, 0, limit);
}

void ListViewport::refresh() {
    layOut(m_rows->anchor(m_offset));
}

/// The anchor keeps its place in the viewport, so that a scrolled list stays put when something
/// above the anchor changes.
void ListViewport::layOut(std::optional<qsizetype> anchor) {
    const int before = anchor ? m_rows->top(*anchor) : 0;
    m_whole = m_rows->layOut(width(), m_offset, m_offset + height());
    if (anchor) {
        const int shift = m_rows->top(*anchor) - before;
        m_offset += shift;
        m_rows->shiftStart(shift);
    }
    m_offset = std::clamp(m_offset, 0, std::max(0, m_whole - height()));
    m_whole = m_rows->layOut(width(), m_offset, m_offset + height());
    m_rows->setGeometry(0, -m_offset, width(), std::max(m_whole, height()));
    m_topFade->setGeometry(0, 0, width(), fadeHeight);
    m_topFade->setVisible(m_offset > 0);
    m_bottomFade->setGeometry(0, height() - fadeHeight, width(), fadeHeight);
    m_bottomFade->setVisible(m_offset + height() < m_whole);
}

QRect ListViewport::legibleRect() const {
    const int above = m_topFade->isHidden() ? 0 : fadeHeight / 2;
    const int below = m_bottomFade->isHidden() ? 0 : fadeHeight / 2;
    return rect().adjusted(0, above, 0, -below);
}

void ListViewport::heightsChanged() {
    const int before = m_whole;
    refresh();
    if (m_whole != before) {
        emit contentResized();
    }
}

void ListViewport::resizeEvent(QResizeEvent *) {
    refresh();
}

void ListViewport::scroll(QWheelEvent &event) {
    scrollTo(m_offset - m_wheel.take(event, notchHeight));
    event.accept();
}

void ListViewport::scrollTo(int offset) {
    const auto anchor = m_rows->anchor(m_offset);
    m_offset = offset;
    layOut(anchor);
    m_rows->abandonEditingOutside(m_offset, m_offset + height());
    m_rows->followPointer();
}

void ListViewport::scrollByPage(int pages) {
    scrollTo(m_offset + pages * (height() - fadeHeight));
}

void ListViewport::reveal(const QWidget &widget) {
    const QWidget *shown = &widget;
    while (shown->parentWidget() != m_rows) {
        shown = shown->parentWidget();
    }
    if (shown->height() > height()) {
        shown = &widget;
    }
    // If it has to scroll at all, it scrolls clear of the fade as well.
    const int top = shown->mapTo(m_rows, QPoint()).y();
    const int bottom = top + shown->height();
    if (top < m_offset) {
        scrollTo(top - fadeHeight);
    } else if (bottom > m_offset + height()) {
        scrollTo(std::min(top, bottom + fadeHeight - height()));
    }
}

void ListViewport::scrollToTop() {
    m_offset = 0;
    layOut(std::nullopt);
}

} // namespace morvane

#include "moc_ListViewport.cpp"
