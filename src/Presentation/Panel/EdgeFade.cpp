#include "Presentation/Panel/EdgeFade.h"

#include "Presentation/Style/Colors.h"

#include <QPainter>

namespace morvane {

EdgeFade::EdgeFade(Edge edge, QWidget *parent) : QWidget(parent), m_edge(edge) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void EdgeFade::paintEvent(QPaintEvent *) {
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(m_edge == Edge::top ? 0 : 1, Qt::black);
    gradient.setColorAt(m_edge == Edge::top ? 1 : 0, Colors::faded(Qt::black, 0));
    QPainter painter(this);
    // Keeps the panel's alpha, so that it stays evenly translucent.
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(rect(), gradient);
}

} // namespace morvane

#include "moc_EdgeFade.cpp"
