#include "Presentation/ListViewport.h"

#include "Presentation/ActivateLayouts.h"
#include "Presentation/EdgeFade.h"

#include <QEvent>
#include <QLayout>
#include <QWheelEvent>

#include <algorithm>

namespace morvane {

namespace {

constexpr int fadeHeight = 28;
constexpr int notchHeight = 48;

} // namespace

ListViewport::ListViewport(QWidget *parent)
    : QWidget(parent), m_content(new QWidget(this)),
      m_topFade(new EdgeFade(EdgeFade::Edge::top, this)),
      m_bottomFade(new EdgeFade(EdgeFade::Edge::bottom, this)) {
    m_content->installEventFilter(this);
}

int ListViewport::contentHeight(int width) const {
    activateLayouts(*m_content);
    const QLayout *layout = m_content->layout();
    return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                       : layout->totalSizeHint().height();
}

void ListViewport::refresh() {
    const int whole = std::max(height(), contentHeight(width()));
    m_offset = std::clamp(m_offset, 0, whole - height());
    m_content->setGeometry(0, -m_offset, width(), whole);
    m_content->layout()->activate();
    m_topFade->setGeometry(0, 0, width(), fadeHeight);
    m_topFade->setVisible(m_offset > 0);
    m_bottomFade->setGeometry(0, height() - fadeHeight, width(), fadeHeight);
    m_bottomFade->setVisible(m_offset + height() < whole);
}

void ListViewport::resizeEvent(QResizeEvent *) {
    refresh();
}

void ListViewport::scroll(QWheelEvent &event) {
    // A notch of a wheel is 120 units.
    const QPoint pixels = event.pixelDelta();
    m_offset -= pixels.isNull() ? event.angleDelta().y() * notchHeight / 120 : pixels.y();
    refresh();
    event.accept();
}

bool ListViewport::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::LayoutRequest) {
        refresh();
        emit contentResized();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace morvane
