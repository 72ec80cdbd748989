#include "Presentation/EdgeFade.h"

#include "Presentation/Colors.h"

#include <QPainter>

namespace morvane {

EdgeFade::EdgeFade(Edge edge, QWidget *parent) : QWidget(parent), m_edge(edge) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void EdgeFade::paintEvent(QPaintEvent *) {
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(m_edge == Edge::top ? 0 : 1, Colors::capsuleFill);
    gradient.setColorAt(m_edge == Edge::top ? 1 : 0, Colors::faded(Colors::capsuleFill, 0));
    QPainter(this).fillRect(rect(), gradient);
}

} // namespace morvane
